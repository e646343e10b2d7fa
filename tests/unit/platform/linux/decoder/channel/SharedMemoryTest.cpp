#include "platform/linux/decoder/channel/SharedMemory.h"

#include "BytesOf.h"

#include <algorithm>
#include <array>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string_view>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

using namespace amberquill::desktop;
using Access = MappedMemory::Access;

namespace {

FileDescriptor unsealed(std::size_t bytes) {
    FileDescriptor memory(::memfd_create("test", MFD_CLOEXEC | MFD_ALLOW_SEALING));
    EXPECT_EQ(::ftruncate(memory.get(), static_cast<off_t>(bytes)), 0);
    return memory;
}

} // namespace

TEST(SharedMemory, SealedMemoryHoldsTheBytesAndCannotBeChanged) {
    const FileDescriptor memory = sealedMemory(bytesOf("icon"));
    ASSERT_TRUE(memory.isOpen());
    const auto mapped = MappedMemory::map(memory, 4, Access::Read);
    ASSERT_TRUE(mapped);
    EXPECT_TRUE(std::ranges::equal(mapped->bytes(), bytesOf("icon")));
    EXPECT_EQ(::pwrite(memory.get(), "x", 1, 0), -1);
    EXPECT_NE(::ftruncate(memory.get(), 2), 0);
    EXPECT_NE(::ftruncate(memory.get(), 8), 0);
    EXPECT_FALSE(MappedMemory::map(memory, 4, Access::ReadAndWrite));
}

TEST(SharedMemory, WritableMemoryIsShared) {
    const FileDescriptor memory = writableMemory(8);
    ASSERT_TRUE(memory.isOpen());
    auto one = MappedMemory::map(memory, 8, Access::ReadAndWrite);
    auto other = MappedMemory::map(memory, 8, Access::ReadAndWrite);
    ASSERT_TRUE(one && other);
    EXPECT_TRUE(std::ranges::all_of(one->bytes(), [](std::byte byte) { return byte == std::byte{0}; }));
    one->bytes()[3] = std::byte{7};
    EXPECT_EQ(other->bytes()[3], std::byte{7});
    EXPECT_NE(::ftruncate(memory.get(), 4), 0);
    EXPECT_NE(::ftruncate(memory.get(), 16), 0);
}

TEST(SharedMemory, MemoryCannotBeExecuted) {
    constexpr unsigned int cannotRun = 0x0008U; // MFD_NOEXEC_SEAL
    if (!FileDescriptor(::memfd_create("test", MFD_CLOEXEC | cannotRun)).isOpen()) {
        GTEST_SKIP() << "this kernel's memory always can";
    }
    for (const FileDescriptor& memory : {sealedMemory(bytesOf("icon")), writableMemory(8)}) {
        EXPECT_NE(::fchmod(memory.get(), 0700), 0);
    }
}

TEST(SharedMemory, MemoryOfAnotherSizeIsNotMapped) {
    const FileDescriptor memory = writableMemory(8);
    EXPECT_FALSE(MappedMemory::map(memory, 4, Access::Read));
    EXPECT_FALSE(MappedMemory::map(memory, 16, Access::Read));
}

TEST(SharedMemory, ZeroBytesCanBeMapped) {
    const FileDescriptor memory = sealedMemory({});
    ASSERT_TRUE(memory.isOpen());
    const auto mapped = MappedMemory::map(memory, 0, Access::Read);
    ASSERT_TRUE(mapped);
    EXPECT_TRUE(mapped->bytes().empty());
    EXPECT_FALSE(MappedMemory::map(memory, 1, Access::Read));
}

TEST(SharedMemory, MemoryThatCouldShrinkIsNotMapped) {
    const FileDescriptor memory = unsealed(8);
    EXPECT_FALSE(MappedMemory::map(memory, 8, Access::Read));
    ASSERT_EQ(::fcntl(memory.get(), F_ADD_SEALS, F_SEAL_SHRINK), 0);
    EXPECT_TRUE(MappedMemory::map(memory, 8, Access::Read));
}

TEST(SharedMemory, OtherDescriptorsAreNotMapped) {
    const FileDescriptor file(::open("/dev/null", O_RDWR | O_CLOEXEC));
    EXPECT_FALSE(MappedMemory::map(file, 8, Access::Read));
    EXPECT_FALSE(MappedMemory::map(FileDescriptor(), 8, Access::Read));
}
