// Frames on their way from the receiver to the web process.
#include <algorithm>
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

constexpr int bytesPerPixel = 4;

// A frame of one colour; what lies between the rows is of another.
std::vector<std::uint8_t> frameOf(std::uint32_t colour, int width, int height, int stride) {
    std::vector<std::uint8_t> bytes(static_cast<std::size_t>(stride) * static_cast<std::size_t>(height),
                                    0xEE);
    for (int row = 0; row < height; ++row) {
        for (int column = 0; column < width; ++column) {
            auto* pixel = bytes.data() + static_cast<std::ptrdiff_t>(row) * stride + column * bytesPerPixel;
            pixel[0] = static_cast<std::uint8_t>(colour);
            pixel[1] = static_cast<std::uint8_t>(colour >> 8);
            pixel[2] = static_cast<std::uint8_t>(colour >> 16);
        }
    }
    return bytes;
}

bool write(PictureWriter& writer, std::uint32_t colour, int width, int height, int padding = 0) {
    const int stride = width * bytesPerPixel + padding;
    return writer.write(width, height, stride, frameOf(colour, width, height, stride).data()) !=
           Written::Refused;
}

bool isAll(const PictureView& view, std::uint32_t colour) {
    return view.pixels().size() == static_cast<std::size_t>(view.width() * view.height()) &&
           std::all_of(view.pixels().begin(), view.pixels().end(),
                       [colour](std::uint32_t pixel) { return pixel == colour; });
}

TEST(APicture, GivesEachReaderTheNewestFrameOnce) {
    PictureWriter writer;
    EXPECT_FALSE(writer.hasFrame());
    EXPECT_FALSE(writer.share());
    ASSERT_TRUE(write(writer, 0x102030, 16, 9));
    const auto first = PictureView::open(writer.share());
    ASSERT_TRUE(first);
    EXPECT_EQ(first->width(), 0);
    EXPECT_TRUE(first->update());
    EXPECT_EQ(first->width(), 16);
    EXPECT_EQ(first->height(), 9);
    EXPECT_TRUE(isAll(*first, 0x102030));
    EXPECT_FALSE(first->update());
    // Another size and rows with a gap between them; the frames between are never seen.
    ASSERT_TRUE(write(writer, 0x111111, 16, 9));
    ASSERT_TRUE(write(writer, 0xFFEEDD, 21, 13, 12));
    EXPECT_TRUE(first->update());
    EXPECT_EQ(first->width(), 21);
    EXPECT_EQ(first->height(), 13);
    EXPECT_TRUE(isAll(*first, 0xFFEEDD));
    const auto second = PictureView::open(writer.share());
    ASSERT_TRUE(second);
    EXPECT_TRUE(second->update());
    EXPECT_TRUE(isAll(*second, 0xFFEEDD));
    // Cleared, there is no picture; and then there is one again.
    writer.clear();
    EXPECT_FALSE(writer.hasFrame());
    EXPECT_TRUE(first->update());
    EXPECT_EQ(first->width(), 0);
    EXPECT_FALSE(first->update());
    ASSERT_TRUE(write(writer, 0x000001, 8, 8));
    EXPECT_TRUE(first->update());
    EXPECT_TRUE(second->update());
    EXPECT_TRUE(isAll(*first, 1));
    EXPECT_TRUE(isAll(*second, 1));
}

TEST(APicture, OutlivesItsWriter) {
    auto writer = std::make_unique<PictureWriter>();
    ASSERT_TRUE(write(*writer, 0xABCDEF, 4, 4));
    const auto view = PictureView::open(writer->share());
    ASSERT_TRUE(view);
    writer.reset();
    EXPECT_TRUE(view->update());
    EXPECT_TRUE(isAll(*view, 0xABCDEF));
}

TEST(APicture, ThinsOutFramesThatAreTooLargeAndRefusesWhatIsNone) {
    PictureWriter writer;
    const std::uint8_t byte = 0;
    EXPECT_EQ(writer.write(0, 9, 64, &byte), Written::Refused);
    EXPECT_EQ(writer.write(16, -9, 64, &byte), Written::Refused);
    EXPECT_EQ(writer.write(16, 9, 63, &byte), Written::Refused) << "rows that overlap";
    EXPECT_EQ(writer.write(0x7FFFFFFF, 1, 0x7FFFFFFF, &byte), Written::Refused);
    EXPECT_EQ(writer.write(16, 9, 64, nullptr), Written::Refused);
    EXPECT_FALSE(writer.share()) << "no memory for nothing";

    struct Size {
        int width, height, shownWidth, shownHeight;
    };
    for (const auto& [width, height, shownWidth, shownHeight] :
         {Size{1920, 1080, 1920, 1080}, Size{3840, 2160, 1920, 1080}, Size{1921, 8, 961, 4},
          Size{1080, 1920, 540, 960}, Size{5761, 1, 1441, 1}}) {
        ASSERT_TRUE(write(writer, 0x223344, width, height));
        const auto view = PictureView::open(writer.share());
        ASSERT_TRUE(view && view->update());
        EXPECT_EQ(view->width(), shownWidth) << width;
        EXPECT_EQ(view->height(), shownHeight) << height;
        EXPECT_TRUE(isAll(*view, 0x223344));
    }
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
            if (!view->update())
                continue;
            ++seen;
            const auto colour = view->pixels().front();
            torn += view->width() != widthOf(colour) || view->height() != 36 || !isAll(*view, colour);
        }
    };
    std::vector<std::thread> readers;
    readers.emplace_back(read);
    readers.emplace_back(read);
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
    PictureMemory& memory = *static_cast<PictureMemory*>(shared.bytes.address());

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
    EXPECT_FALSE(Mapping::ofWritable(file, sizeof(PictureMemory)));
    EXPECT_LT(::write(file.get(), "x", 1), 0);
    EXPECT_NE(ftruncate(file.get(), 0), 0);
    EXPECT_TRUE(write(writer, 2, 4, 4)) << "the writer itself goes on";
}

}  // namespace
