#pragma once

#include "platform/linux/applications/icons/FileState.h"

#include <QByteArray>
#include <QByteArrayView>
#include <map>
#include <string>
#include <vector>

namespace amberquill::desktop {

// The files whose decoding may have ended a process. What was decoded alone when the process died did it:
// guilty. Of several, one did: they are suspects, to be tried again one at a time; whoever is found at the
// scene a second time is guilty, and whoever decodes is cleared.
class DecodingSuspects {
public:
    enum class Standing { Clear, Suspect, Guilty };

    // A file that has changed since is clear.
    [[nodiscard]] Standing standing(const FileState& file) const;

    // What one process was decoding when it ended.
    void addDeath(const std::vector<FileState>& notes);

    // Forgets about the file. False: there was nothing to forget.
    bool clear(const std::string& path);

    [[nodiscard]] bool isEmpty() const { return suspects_.empty(); }

    // As a small text file. Lines that make no sense are left out on reading; what is too much is dropped.
    [[nodiscard]] QByteArray written() const;
    [[nodiscard]] static DecodingSuspects read(QByteArrayView text);

private:
    struct Suspect {
        FileState file;
        bool isGuilty = false;
    };
    std::map<std::string, Suspect> suspects_; // by path
};

} // namespace amberquill::desktop
