#include "platform/linux/session/ApplicationRequest.h"

#include <gtest/gtest.h>

using namespace amberquill::desktop;
using namespace Qt::StringLiterals;

namespace {

using RequestKind = ApplicationRequest::Kind;

// A method call, built argument by argument.
class Call {
public:
    explicit Call(const char* method)
        : message_(makeCall(applicationBusName, applicationBusPath, "org.freedesktop.Application", method)) {
        dbus_message_iter_init_append(message_.get(), &end_);
    }

    Call& text(const char* text) {
        dbus_message_iter_append_basic(&end_, DBUS_TYPE_STRING, static_cast<const void*>(&text));
        return *this;
    }

    Call& emptyList(const char* elements) {
        DBusMessageIter list;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_ARRAY, elements, &list);
        dbus_message_iter_close_container(&end_, &list);
        return *this;
    }

    Call& data(const std::vector<std::pair<const char*, const char*>>& texts, dbus_uint32_t number = 0) {
        DBusMessageIter dictionary;
        dbus_message_iter_open_container(&end_, DBUS_TYPE_ARRAY, "{sv}", &dictionary);
        const char* const key = "activation-token";
        if (number != 0) {
            entry(dictionary, key, DBUS_TYPE_UINT32, "u", &number);
        }
        for (const auto& [name, value] : texts) {
            entry(dictionary, name, DBUS_TYPE_STRING, "s", &value);
        }
        dbus_message_iter_close_container(&end_, &dictionary);
        return *this;
    }

    [[nodiscard]] ReadRequest read() const { return readRequest(*message_); }

private:
    static void entry(DBusMessageIter& dictionary, const char* key, int type, const char* signature,
                      const void* value) {
        DBusMessageIter entry;
        DBusMessageIter variant;
        dbus_message_iter_open_container(&dictionary, DBUS_TYPE_DICT_ENTRY, nullptr, &entry);
        dbus_message_iter_append_basic(&entry, DBUS_TYPE_STRING, static_cast<const void*>(&key));
        dbus_message_iter_open_container(&entry, DBUS_TYPE_VARIANT, signature, &variant);
        dbus_message_iter_append_basic(&variant, type, value);
        dbus_message_iter_close_container(&entry, &variant);
        dbus_message_iter_close_container(&dictionary, &entry);
    }

    BusMessage message_;
    DBusMessageIter end_ = {};
};

ApplicationRequest requestOf(const ReadRequest& read) {
    EXPECT_TRUE(std::holds_alternative<ApplicationRequest>(read));
    const auto* request = std::get_if<ApplicationRequest>(&read);
    return request != nullptr ? *request : ApplicationRequest{RequestKind::Hide, u"none"_s, u"none"_s};
}

} // namespace

TEST(ApplicationRequest, ActivateShows) {
    EXPECT_EQ(requestOf(Call("Activate").data({}).read()), ApplicationRequest());
}

TEST(ApplicationRequest, OpenShowsAndOpensNothing) {
    EXPECT_EQ(requestOf(Call("Open").emptyList("s").data({}).read()), ApplicationRequest());
}

TEST(ApplicationRequest, AnActionDoesWhatItsNameSays) {
    const auto kind = [](const char* action) {
        return requestOf(Call("ActivateAction").text(action).emptyList("v").data({}).read()).kind;
    };
    EXPECT_EQ(kind("show"), RequestKind::Show);
    EXPECT_EQ(kind("hide"), RequestKind::Hide);
    EXPECT_EQ(kind("toggle"), RequestKind::Toggle);
}

TEST(ApplicationRequest, AnUnknownActionIsRefused) {
    const ReadRequest read = Call("ActivateAction").text("explode").emptyList("v").data({}).read();
    ASSERT_TRUE(std::holds_alternative<RequestRefusal>(read));
    EXPECT_STREQ(std::get<RequestRefusal>(read).error, DBUS_ERROR_INVALID_ARGS);
}

TEST(ApplicationRequest, ActivationTokensArePassedOn) {
    const std::vector<std::pair<const char*, const char*>> tokens = {
        {"activation-token", "token"}, {"desktop-startup-id", "id_TIME5"}, {"other", "thing"}};
    EXPECT_EQ(requestOf(Call("Activate").data(tokens).read()),
              (ApplicationRequest{RequestKind::Show, u"token"_s, u"id_TIME5"_s}));
    EXPECT_EQ(requestOf(Call("ActivateAction").text("toggle").emptyList("v").data(tokens).read()),
              (ApplicationRequest{RequestKind::Toggle, u"token"_s, u"id_TIME5"_s}));
}

TEST(ApplicationRequest, InvalidTokensAreLeftOut) {
    EXPECT_EQ(requestOf(Call("Activate").data({}, 7).read()), ApplicationRequest());
    const std::string endless(100'000, 'x');
    EXPECT_EQ(requestOf(Call("Activate").data({{"activation-token", endless.c_str()}}).read()),
              ApplicationRequest());
}

TEST(ApplicationRequest, WrongArgumentsAreRefused) {
    const auto isRefused = [](const Call& call) {
        return std::holds_alternative<RequestRefusal>(call.read());
    };
    EXPECT_TRUE(isRefused(Call("Activate")));
    EXPECT_TRUE(isRefused(Call("Activate").text("a")));
    EXPECT_TRUE(isRefused(Call("Activate").data({}).text("more")));
    EXPECT_TRUE(isRefused(Call("Open").data({})));
    EXPECT_TRUE(isRefused(Call("ActivateAction").text("toggle")));
    EXPECT_TRUE(isRefused(Call("ActivateAction").emptyList("v").text("toggle").data({})));
}

TEST(ApplicationRequest, OtherMethodsAreUnknown) {
    EXPECT_TRUE(std::holds_alternative<std::monostate>(Call("Deactivate").data({}).read()));
    const BusMessage other =
        makeCall(applicationBusName, applicationBusPath, "org.example.Other", "Activate");
    EXPECT_TRUE(std::holds_alternative<std::monostate>(readRequest(*other)));
}

TEST(ApplicationRequest, IsForwardedUnchanged) {
    for (const RequestKind kind : {RequestKind::Show, RequestKind::Hide, RequestKind::Toggle}) {
        const ApplicationRequest request{kind, u"token"_s, u"id_TIME5"_s};
        const BusMessage call = makeRequestCall(request);
        EXPECT_EQ(requestOf(readRequest(*call)), request);
        EXPECT_EQ(dbus_message_get_auto_start(call.get()), FALSE);
    }
    EXPECT_EQ(requestOf(readRequest(*makeRequestCall({}))), ApplicationRequest());
}

TEST(ApplicationRequest, EachWindowSystemGetsItsOwnKindOfToken) {
    const ApplicationRequest both{RequestKind::Show, u"token"_s, u"id"_s};
    EXPECT_EQ(tokenFor(both, u"xcb"), u"id"_s);
    EXPECT_EQ(tokenFor(both, u"wayland"), u"token"_s);
    EXPECT_EQ(tokenFor({RequestKind::Show, u"token"_s, {}}, u"xcb"), u"token"_s);
    EXPECT_EQ(tokenFor({RequestKind::Show, {}, u"id"_s}, u"wayland"), u"id"_s);
    EXPECT_EQ(tokenFor({}, u"xcb"), QString());
}
