// The program that the tests launch. It reports its state and exits, or with --stay runs until it is killed.
// Plain C++, because libraries may open files or change signals.
#include <cstdio>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <unistd.h>

namespace {

// One line for each value.
std::string hex(const std::string& text) {
    constexpr char digits[] = "0123456789abcdef";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        result += digits[byte >> 4U];
        result += digits[byte & 15U];
    }
    return result;
}

std::string linkTarget(const std::string& path) {
    char target[4096];
    const ssize_t length = readlink(path.c_str(), target, sizeof target);
    return length < 0 ? std::string() : std::string(target, static_cast<std::size_t>(length));
}

void reportDescriptors(std::ostream& out) {
    DIR* const folder = opendir("/proc/self/fd");
    const int own = dirfd(folder);
    while (const dirent* const entry = readdir(folder)) {
        const std::string name = static_cast<const char*>(entry->d_name);
        if (name == "." || name == ".." || name == std::to_string(own)) {
            continue;
        }
        const int mode = fcntl(std::stoi(name), F_GETFL);
        out << "descriptor" << name << ' ' << hex(linkTarget("/proc/self/fd/" + name)) << '\n';
        out << "nonblocking" << name << ' ' << hex((mode & O_NONBLOCK) != 0 ? "yes" : "no") << '\n';
    }
    closedir(folder);
}

void reportStatus(std::ostream& out) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        const auto colon = line.find(":\t");
        const std::string name = line.substr(0, colon);
        if (name == "SigBlk" || name == "SigIgn" || name == "SigCgt") {
            out << name << ' ' << hex(line.substr(colon + 2)) << '\n';
        }
    }
    std::ifstream score("/proc/self/oom_score_adj");
    std::string value;
    std::getline(score, value);
    out << "oom " << hex(value) << '\n';
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        return 2;
    }
    const std::string path = argv[1];
    const std::string unfinished = path + ".unfinished";
    // Collected in memory first, so that the report's own file is not in it.
    std::ostringstream out;
    for (int i = 0; i < argc; ++i) {
        out << "argument " << hex(argv[i]) << '\n';
    }
    for (char** variable = environ; *variable != nullptr; ++variable) {
        out << "variable " << hex(*variable) << '\n';
    }
    reportDescriptors(out);
    reportStatus(out);
    out << "process " << hex(std::to_string(getpid())) << '\n';
    out << "session " << hex(std::to_string(getsid(0))) << '\n';
    out << "folder " << hex(linkTarget("/proc/self/cwd")) << '\n';
    rlimit limit{};
    getrlimit(RLIMIT_NOFILE, &limit);
    out << "files " << hex(std::to_string(limit.rlim_cur)) << '\n';
    std::ofstream(unfinished) << out.str();
    std::rename(unfinished.c_str(), path.c_str());
    if (argc > 2 && std::string(argv[2]) == "--stay") {
        pause();
    }
    return 0;
}
