#include "platform/host/window_session.h"
#include "platform/host/x11/maps_file.h"
#include "platform/host/x11/proc_image.h"
#include "platform/host/x11/proc_memory.h"

#include <gtest/gtest.h>

#include <sys/mman.h>
#include <unistd.h>

#include <cstring>
#include <numeric>

namespace tally::platform {
namespace {

using namespace std::string_view_literals;

TEST(MapsFile, OnlyReadablePrivateMemoryThatCanHoldAHeapCounts)
{
    const std::pair<std::string_view, bool> cases[] = {
        {"7f0000001000-7f0000003000 rw-p 00000000 00:00 0 ", true},
        {"7f0000001000-7f0000003000 r--p 00000000 00:00 0", true},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:00 0          [heap]", true},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:00 0          [anon:glibc: malloc]", true},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:01 77         /memfd:wine (deleted)", true},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:05 4          /dev/zero (deleted)", true},
        {"7f0000001000-7f0000003000 ---p 00000000 00:00 0 ", false},
        {"7f0000001000-7f0000003000 rw-s 00000000 00:01 9          /dev/shm/x", false},
        {"7f0000001000-7f0000003000 r-xp 00001000 08:01 55         /usr/lib/libc.so.6", false},
        {"7f0000001000-7f0000003000 rw-p 00001000 08:01 55         /usr/lib/libc.so.6", false},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:06 8          /dev/dri/card0", false},
        {"7f0000001000-7f0000003000 rw-p 00000000 00:00 0          [stack]", false},
        {"7f0000001000-7f0000003000 r-xp 00000000 00:00 0          [vdso]", false},
        {"7f0000001000-7f0000003000 r--p 00000000 00:00 0          [vvar]", false},
        {"7f0000003000-7f0000001000 rw-p 00000000 00:00 0 ", false},
        {"7f00000010007f0000003000 rw-p 00000000 00:00 0 ", false},
        {"zz-7f0000003000 rw-p 00000000 00:00 0 ", false},
        {"7f0000001000-17f00000030000000 rw-p 00000000 00:00 0 ", false},
        {"7f0000001000-7f0000003000 rw-p", false},
        {"", false},
    };
    for (const auto &[line, counts] : cases) {
        const auto region = heap_region_of_maps_line(line);
        ASSERT_EQ(region.has_value(), counts) << line;
        if (region) {
            EXPECT_EQ(region->begin, 0x7f0000001000U) << line;
            EXPECT_EQ(region->end, 0x7f0000003000U) << line;
        }
    }
}

TEST(ProcImage, AWineProgramIsKnownByItsOwnPath)
{
    struct Case {
        std::string_view image, command_line, shown;
    };
    const Case cases[] = {
        {"/usr/bin/rok", "rok\0--x\0"sv, "/usr/bin/rok"},
        {"/usr/bin/rok (deleted)", "rok\0"sv, "/usr/bin/rok"},
        {"/opt/proton/files/bin/wine64-preloader", "Z:\\games\\RoK.EXE\0-opt\0"sv,
         "Z:\\games\\RoK.EXE"},
        {"/usr/lib/wine/wine", "wine\0C:\\a b\\rok.exe\0"sv, "C:\\a b\\rok.exe"},
        {"/usr/lib/wine/wine", "wine\0C:\\rok.exe"sv, "C:\\rok.exe"},
        {"/usr/lib/wine/wine64", "wine64\0--help\0"sv, "/usr/lib/wine/wine64"},
        {"/usr/lib/wine/wine64", ""sv, "/usr/lib/wine/wine64"},
        {"/home/wine/rok", "x.exe\0"sv, "/home/wine/rok"},
        {"/usr/bin/wine", ".exe\0"sv, "/usr/bin/wine"},
    };
    for (const Case &c : cases)
        EXPECT_EQ(shown_image_path(c.image, c.command_line), c.shown) << c.image;
}

class OwnMemory : public testing::Test {
protected:
    static constexpr std::size_t page = 4096;
    static constexpr std::size_t pages = 64;

    void SetUp() override
    {
        void *mapped =
            mmap(nullptr, pages * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
        ASSERT_NE(mapped, MAP_FAILED);
        bytes_ = static_cast<char *>(mapped);
        std::memset(bytes_, 'm', pages * page);
        begin_ = reinterpret_cast<std::uint64_t>(bytes_);
        memory_ = ProcMemory::open(static_cast<std::uint32_t>(getpid())).memory;
        ASSERT_NE(memory_, nullptr);
    }
    void TearDown() override { munmap(bytes_, pages * page); }

    std::uint64_t bytes_listed()
    {
        const auto regions = memory_->readable_regions(begin_, begin_ + pages * page);
        return std::accumulate(regions.begin(), regions.end(), std::uint64_t{0},
                               [](std::uint64_t sum, const MemoryRegion &region) {
                                   return sum + region.end - region.begin;
                               });
    }

    char *bytes_ = nullptr;
    std::uint64_t begin_ = 0;
    std::unique_ptr<ProcessMemory> memory_;
};

TEST_F(OwnMemory, IsReadUpToTheFirstUnreadablePage)
{
    ASSERT_EQ(mprotect(bytes_ + 2 * page, page, PROT_NONE), 0);
    std::string copy(4 * page, '\0');
    EXPECT_EQ(memory_->read(begin_, copy.data(), copy.size()), 2 * page);
    EXPECT_EQ(copy.substr(0, 2 * page), std::string(2 * page, 'm'));
    EXPECT_EQ(memory_->read(begin_ + 2 * page, copy.data(), page), 0U);
    EXPECT_EQ(memory_->read(0, copy.data(), page), 0U);
}

TEST_F(OwnMemory, IsListedWithinBoundsAndWithoutItsHoles)
{
    EXPECT_EQ(bytes_listed(), pages * page);
    for (std::size_t i = 1; i < pages; i += 2)
        ASSERT_EQ(mprotect(bytes_ + i * page, page, PROT_NONE), 0);
    EXPECT_EQ(bytes_listed(), pages / 2 * page);
}

TEST(ProcMemory, AProcessThatIsNotThereIsNoQuestionOfRights)
{
    for (const std::uint32_t pid : {0U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        const OpenedProcess opened = ProcMemory::open(pid);
        EXPECT_EQ(opened.memory, nullptr) << pid;
        EXPECT_FALSE(opened.rights_missing) << pid;
    }
}

TEST(WindowSession, X11IsAskedForOnlyBesideWaylandAndNeverAgainstTheUser)
{
    EXPECT_EQ(qt_platform_to_ask_for({"wayland-0", ":1", ""}), "xcb;wayland");
    EXPECT_EQ(qt_platform_to_ask_for({"wayland-0", "", ""}), "");
    EXPECT_EQ(qt_platform_to_ask_for({"", ":0", ""}), "");
    EXPECT_EQ(qt_platform_to_ask_for({"wayland-0", ":1", "wayland"}), "");
}

} // namespace
} // namespace tally::platform
