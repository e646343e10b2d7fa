#pragma once

namespace amberquill {

// While one lives, folders are listed in this thread as some file systems list them: without telling what
// their entries are. For executables that link amberquill_test_entry_types.
class UnknownEntryTypes {
public:
    UnknownEntryTypes();
    ~UnknownEntryTypes();

    UnknownEntryTypes(const UnknownEntryTypes&) = delete;
    UnknownEntryTypes& operator=(const UnknownEntryTypes&) = delete;
};

} // namespace amberquill
