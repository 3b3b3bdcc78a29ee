// Frames on their way from the receiver to the web process.
#include <algorithm>
#include <array>
#include <atomic>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "Host/Picture/PictureView.h"
#include "Host/Picture/PictureWriter.h"

namespace {

using namespace Host;

bool write(PictureWriter& writer, std::uint32_t colour, int width, int height) {
    return writer.write(width, height, [&](std::uint32_t* pixels) {
        std::fill_n(pixels, width * height, colour);
        return true;
    }) != Written::Refused;
}

bool isAll(const PictureView& view, std::uint32_t colour) {
    std::vector<std::uint32_t> pixels(static_cast<std::size_t>(view.width() * view.height()));
    return view.read(pixels.data()) && std::all_of(pixels.begin(), pixels.end(),
                                                   [colour](std::uint32_t pixel) { return pixel == colour; });
}

// Whether there is another frame than at the last look, of this size and colour.
bool hasNew(PictureView& view, std::uint32_t colour, int width, int height) {
    return view.update() && view.width() == width && view.height() == height && isAll(view, colour);
}

TEST(APicture, GivesEachReaderTheNewestFrameOnce) {
    PictureWriter writer;
    EXPECT_FALSE(writer.hasFrame());
    EXPECT_FALSE(writer.share());
    ASSERT_TRUE(write(writer, 0x102030, 16, 9));
    const auto first = PictureView::open(writer.share());
    ASSERT_TRUE(first);
    EXPECT_EQ(first->width(), 0);
    EXPECT_TRUE(hasNew(*first, 0x102030, 16, 9));
    EXPECT_FALSE(first->update());
    // Another size; the frame between is never seen, nor one that could not be made.
    ASSERT_TRUE(write(writer, 0x111111, 16, 9));
    ASSERT_TRUE(write(writer, 0xFFEEDD, 21, 13));
    EXPECT_EQ(writer.write(3, 3, [](std::uint32_t*) { return false; }), Written::Refused);
    EXPECT_TRUE(hasNew(*first, 0xFFEEDD, 21, 13));
    const auto second = PictureView::open(writer.share());
    ASSERT_TRUE(second);
    EXPECT_TRUE(hasNew(*second, 0xFFEEDD, 21, 13));
    // Cleared, there is no picture; and then there is one again.
    writer.clear();
    EXPECT_FALSE(writer.hasFrame());
    EXPECT_TRUE(first->update());
    EXPECT_EQ(first->width(), 0);
    EXPECT_FALSE(first->update());
    ASSERT_TRUE(write(writer, 0x000001, 8, 8));
    EXPECT_TRUE(hasNew(*first, 1, 8, 8));
    EXPECT_TRUE(hasNew(*second, 1, 8, 8));
}

TEST(APicture, OutlivesItsWriter) {
    auto writer = std::make_unique<PictureWriter>();
    ASSERT_TRUE(write(*writer, 0xABCDEF, 4, 4));
    const auto view = PictureView::open(writer->share());
    ASSERT_TRUE(view);
    writer.reset();
    EXPECT_TRUE(hasNew(*view, 0xABCDEF, 4, 4));
}

TEST(APicture, RefusesWhatIsNoFrame) {
    PictureWriter writer;
    for (const auto& [width, height] : {std::pair(0, 9), std::pair(16, -9), std::pair(1921, 8),
                                        std::pair(8, 1081), std::pair(0x7FFFFFFF, 1)})
        EXPECT_FALSE(write(writer, 0, width, height)) << width << "x" << height;
    EXPECT_FALSE(writer.share()) << "no memory for nothing";
    EXPECT_TRUE(write(writer, 0x223344, 1920, 1080));
}

// Each frame's size follows from its colour, so that a mixture of two shows in either.
constexpr int widthOf(std::uint32_t colour) {
    return 64 + static_cast<int>(colour % 7);
}

TEST(APicture, IsNeverTornHoweverFastItIsWritten) {
    PictureWriter writer;
    ASSERT_TRUE(write(writer, 0, widthOf(0), 36));
    std::atomic<bool> done = false;
    std::atomic<int> torn = 0;
    std::atomic<int> seen = 0;
    const auto read = [&] {
        const auto view = PictureView::open(writer.share());
        while (!done) {
            std::array<std::uint32_t, (64 + 6) * 36> pixels;
            if (!view->update() || !view->read(pixels.data()))
                continue;
            ++seen;
            const auto colour = pixels.front();
            torn +=
                view->width() != widthOf(colour) || view->height() != 36 ||
                std::count(pixels.begin(), pixels.begin() + view->width() * 36, colour) != view->width() * 36;
        }
    };
    std::array readers = {std::thread(read), std::thread(read)};
    constexpr int enough = 2000;
    for (std::uint32_t colour = 1; colour < 0xFFFFFF && (colour < 2000 || seen < enough); ++colour)
        ASSERT_TRUE(write(writer, colour, widthOf(colour), 36));
    done = true;
    for (auto& reader : readers)
        reader.join();
    EXPECT_GE(seen, enough);
    EXPECT_EQ(torn, 0);
}

// Memory like a writer's, into which the test writes what no writer would.
struct Forgery {
    SharedMemory shared = makeSharedMemory("forgery", sizeof(PictureMemory)).value();
    PictureMemory& memory = *static_cast<PictureMemory*>(shared.bytes.get());

    Forgery() {
        memory.mark = PictureMemory::Mark;
        put(1, 16, 9);
    }
    void put(std::uint32_t number, std::uint32_t width, std::uint32_t height) {
        memory.newest = number;
        auto& buffer = memory.bufferOf(number);
        buffer.number = number;
        buffer.width = width;
        buffer.height = height;
    }
};

TEST(AViewOfAPicture, BelievesNothingThatTheMemorySays) {
    Forgery forgery;
    const auto view = PictureView::open(forgery.shared.file.duplicate());
    ASSERT_TRUE(view);
    EXPECT_TRUE(view->update());
    constexpr std::uint32_t huge = 0xFFFFFFFF;
    std::uint32_t number = 1;
    for (const auto& [width, height] : {std::pair{0U, 9U}, std::pair{16U, 0U}, std::pair{1921U, 9U},
                                        std::pair{16U, 1081U}, std::pair{huge, huge}, std::pair{2U, huge}}) {
        forgery.put(++number, width, height);
        EXPECT_FALSE(view->update()) << width << "x" << height;
        EXPECT_EQ(view->width(), 16) << "the frame before stays";
    }
    forgery.memory.bufferOf(huge - 1).number = 0;
    forgery.memory.newest = huge - 1;
    EXPECT_FALSE(view->update()) << "a frame that is being written";
    forgery.put(huge, 1920, 1080);
    EXPECT_TRUE(view->update());
    forgery.memory.bufferOf(huge).number = 1;
    EXPECT_FALSE(isAll(*view, 0)) << "another frame, written since";
}

TEST(AViewOfAPicture, OpensNothingThatIsNotAPictureOrCouldBeCutOff) {
    Forgery forgery;
    forgery.memory.mark = 0;
    EXPECT_FALSE(PictureView::open(forgery.shared.file.duplicate())) << "another mark";
    EXPECT_FALSE(PictureView::open(Descriptor()));
    EXPECT_FALSE(PictureView::open(std::move(makeSharedMemory("small", 4096).value().file)));

    Descriptor unsealed(memfd_create("unsealed", MFD_CLOEXEC));
    const auto mark = PictureMemory::Mark;
    ASSERT_EQ(ftruncate(unsealed.get(), sizeof(PictureMemory)), 0);
    ASSERT_EQ(::write(unsealed.get(), &mark, sizeof(mark)), static_cast<ssize_t>(sizeof(mark)));
    EXPECT_FALSE(PictureView::open(std::move(unsealed))) << "its owner could make it smaller";
    int ends[2] = {-1, -1};
    ASSERT_EQ(pipe(ends), 0);
    const Descriptor other(ends[1]);
    EXPECT_FALSE(PictureView::open(Descriptor(ends[0])));
}

TEST(AViewOfAPicture, CannotBeUsedToDrawIntoIt) {
    PictureWriter writer;
    ASSERT_TRUE(write(writer, 1, 4, 4));
    const auto file = writer.share();
    EXPECT_FALSE(mapFile(file, sizeof(PictureMemory), PROT_READ | PROT_WRITE));
    EXPECT_LT(::write(file.get(), "x", 1), 0);
    EXPECT_NE(ftruncate(file.get(), 0), 0);
    EXPECT_TRUE(write(writer, 2, 4, 4)) << "the writer itself goes on";
}

}  // namespace
