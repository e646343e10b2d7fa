// Prints the applications that GIO lists: the id, file and name of each, NUL-terminated. A program of its
// own, because GIO reads its environment only once.
#include <cstdio>
#include <gio/gdesktopappinfo.h>
#include <gio/gio.h>
#include <initializer_list>

int main() {
    GList* const applications = g_app_info_get_all();
    for (GList* item = applications; item != nullptr; item = item->next) {
        auto* const application = static_cast<GAppInfo*>(item->data);
        if (g_app_info_should_show(application) != 0) {
            const char* const file = g_desktop_app_info_get_filename(G_DESKTOP_APP_INFO(application));
            for (const char* const text :
                 {g_app_info_get_id(application), file, g_app_info_get_name(application)}) {
                std::fputs(text == nullptr ? "" : text, stdout);
                std::fputc('\0', stdout);
            }
        }
    }
    g_list_free_full(applications, g_object_unref);
    return 0;
}
