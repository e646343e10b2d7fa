// Rare results of the C library, for this thread and the lifetime of an object. For executables that link
// amberquill_test_system_calls.
#pragma once

namespace amberquill {

// `readdir` does not know the types of the entries, as on some file systems.
class UnknownEntryTypes {
public:
    UnknownEntryTypes();
    ~UnknownEntryTypes();

    UnknownEntryTypes(const UnknownEntryTypes&) = delete;
    UnknownEntryTypes& operator=(const UnknownEntryTypes&) = delete;
};

// `fsync` fails with EIO, as on a broken disk.
class FailingFlush {
public:
    FailingFlush();
    ~FailingFlush();

    FailingFlush(const FailingFlush&) = delete;
    FailingFlush& operator=(const FailingFlush&) = delete;
};

} // namespace amberquill
