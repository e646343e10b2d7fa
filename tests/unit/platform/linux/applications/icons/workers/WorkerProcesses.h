#pragma once

#include <array>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <sys/types.h>
#include <unistd.h>
#include <vector>

namespace amberquill {

// This process's children, with zombies only if asked for.
inline std::vector<pid_t> childProcesses(bool withEnded = true) {
    std::vector<pid_t> result;
    for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
        const auto name = entry.path().filename().string();
        if (name.find_first_not_of("0123456789") != std::string::npos) {
            continue;
        }
        std::ifstream file(entry.path() / "stat");
        std::string text;
        std::getline(file, text);
        const auto rest = text.rfind(')'); // of its name, which may contain any character
        if (rest == std::string::npos) {
            continue; // it has ended meanwhile
        }
        const char state = text.at(rest + 2);
        if (std::stoi(text.substr(rest + 4)) == ::getpid() && (withEnded || state != 'Z')) {
            result.push_back(std::stoi(name));
        }
    }
    return result;
}

inline std::vector<pid_t> runningChildProcesses() {
    return childProcesses(false);
}

// A kill from outside. False: there is no child.
inline bool killChildProcess(std::mt19937& random) {
    constexpr std::array signals{SIGKILL, SIGTERM, SIGHUP};
    const auto running = runningChildProcesses();
    return !running.empty() &&
           ::kill(running.at(random() % running.size()), signals.at(random() % signals.size())) == 0;
}

} // namespace amberquill
