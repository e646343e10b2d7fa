#include "platform/linux/decoder/process/Landlock.h"

#include "platform/linux/files/FileDescriptor.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fcntl.h>
#include <linux/landlock.h>
#include <sys/prctl.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace amberquill::desktop {

namespace {

// The structure of newer kernels' headers. An older kernel accepts it if the fields that it does not know are
// zero.
struct RulesetAttributes {
    std::uint64_t files = 0;
    std::uint64_t network = 0;
    std::uint64_t scopes = 0;
};

// All rights by the version of the interface: to files, to the network (bind and connect), and scopes
// (abstract sockets and signals of other programs).
constexpr std::array<std::uint64_t, 5> fileRights{(1ULL << 13) - 1, (1ULL << 14) - 1, (1ULL << 15) - 1,
                                                  (1ULL << 15) - 1, (1ULL << 16) - 1};
constexpr long networkVersion = 4;
constexpr std::uint64_t networkRights = (1ULL << 2) - 1;
constexpr long scopesVersion = 6;
constexpr std::uint64_t scopes = (1ULL << 2) - 1;

RulesetAttributes everything(long version) {
    RulesetAttributes attributes;
    const auto known = static_cast<std::size_t>(version);
    attributes.files = fileRights.at(std::min(known, fileRights.size()) - 1);
    attributes.network = version >= networkVersion ? networkRights : 0;
    attributes.scopes = version >= scopesVersion ? scopes : 0;
    return attributes;
}

bool allowReading(const FileDescriptor& ruleset, const std::string& path) {
    const FileDescriptor file(::open(path.c_str(), O_PATH | O_CLOEXEC));
    struct stat status = {};
    if (!file.isOpen() || ::fstat(file.get(), &status) != 0) {
        return true;
    }
    landlock_path_beneath_attr rule = {};
    rule.allowed_access = LANDLOCK_ACCESS_FS_READ_FILE;
    if (S_ISDIR(status.st_mode)) {
        rule.allowed_access |= LANDLOCK_ACCESS_FS_READ_DIR;
    }
    rule.parent_fd = file.get();
    return ::syscall(SYS_landlock_add_rule, ruleset.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
}

} // namespace

bool restrictFiles(std::span<const std::string> readable) {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    if (version < 1) {
        return false;
    }
    const auto attributes = everything(version);
    const FileDescriptor ruleset(
        static_cast<int>(::syscall(SYS_landlock_create_ruleset, &attributes, sizeof attributes, 0)));
    if (!ruleset.isOpen()) {
        return false;
    }
    for (const auto& path : readable) {
        if (!allowReading(ruleset, path)) {
            return false;
        }
    }
    return ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) == 0 &&
           ::syscall(SYS_landlock_restrict_self, ruleset.get(), 0) == 0;
}

} // namespace amberquill::desktop
