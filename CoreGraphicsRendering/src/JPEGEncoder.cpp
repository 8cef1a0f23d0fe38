// JPEG through libjpeg-turbo with its defaults (quality 75, 4:2:0). JPEG has
// no alpha, so the picture is composited over white: transparent areas come
// out white, as people expect from a flattened image, rather than black.

#include "Encoders.hpp"

#include <csetjmp>
#include <cstdio>
#include <memory>
#include <vector>

#include <jpeglib.h>

namespace vantel {

namespace {

// libjpeg reports a fatal error by calling error_exit, which must not
// return; it jumps back to the encoder. No C++ object lives between the
// setjmp and the library calls, so the jump skips no destructor.
struct ErrorJump {
    jpeg_error_mgr manager;
    std::jmp_buf jump;
};

void jumpOnError(j_common_ptr info) { std::longjmp(reinterpret_cast<ErrorJump*>(info->err)->jump, 1); }
void ignoreMessage(j_common_ptr) {}

// Premultiplied colour over white is colour + (255 - alpha): no division.
void rowOverWhite(const ImageView& image, int y, JSAMPLE* rgb) {
    const std::uint32_t* row = image.row(y);
    for (int x = 0; x < image.width; ++x, rgb += 3) {
        std::uint32_t pixel = row[x];
        std::uint32_t white = 255 - (pixel >> 24);
        rgb[0] = static_cast<JSAMPLE>(((pixel >> 16) & 0xff) + white);
        rgb[1] = static_cast<JSAMPLE>(((pixel >> 8) & 0xff) + white);
        rgb[2] = static_cast<JSAMPLE>((pixel & 0xff) + white);
    }
}

// Collects the compressed bytes in a Data. libjpeg-turbo's own memory
// destination cannot be freed safely after a failure in the middle.
struct DataDestination {
    jpeg_destination_mgr manager;
    Data* out;
    JOCTET buffer[1 << 16];

    static DataDestination& of(j_compress_ptr info) { return *reinterpret_cast<DataDestination*>(info->dest); }

    void reset() {
        manager.next_output_byte = buffer;
        manager.free_in_buffer = sizeof buffer;
    }

    static void start(j_compress_ptr info) { of(info).reset(); }

    static boolean flushFull(j_compress_ptr info) {
        append(info, sizeof buffer);
        of(info).reset();
        return TRUE;
    }

    static void finish(j_compress_ptr info) { append(info, sizeof buffer - of(info).manager.free_in_buffer); }

    static void append(j_compress_ptr info, std::size_t count) {
        DataDestination& destination = of(info);
        bool appended = true;
        try {
            destination.out->insert(destination.out->end(), destination.buffer, destination.buffer + count);
        } catch (...) {
            appended = false;
        }
        if (!appended) info->err->error_exit(reinterpret_cast<j_common_ptr>(info));
    }
};

// Returns false when libjpeg failed.
bool compress(jpeg_compress_struct& info, ErrorJump& error, DataDestination& destination, const ImageView& image,
              JSAMPLE* row) {
    info.err = jpeg_std_error(&error.manager);
    error.manager.error_exit = jumpOnError;
    error.manager.output_message = ignoreMessage;
    if (setjmp(error.jump)) return false;
    jpeg_create_compress(&info);
    destination.manager.init_destination = DataDestination::start;
    destination.manager.empty_output_buffer = DataDestination::flushFull;
    destination.manager.term_destination = DataDestination::finish;
    info.dest = &destination.manager;
    info.image_width = static_cast<JDIMENSION>(image.width);
    info.image_height = static_cast<JDIMENSION>(image.height);
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_start_compress(&info, TRUE);
    for (int y = 0; y < image.height; ++y) {
        rowOverWhite(image, y, row);
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    return true;
}

}  // namespace

Data encodeJPEG(const ImageView& image) {
    if (image.width > JPEG_MAX_DIMENSION || image.height > JPEG_MAX_DIMENSION) failToEncode();
    std::vector<JSAMPLE> row(3 * static_cast<std::size_t>(image.width));
    Data bytes;
    auto destination = std::make_unique<DataDestination>();
    destination->out = &bytes;
    jpeg_compress_struct info{};
    ErrorJump error{};
    bool done = compress(info, error, *destination, image, row.data());
    jpeg_destroy_compress(&info);
    if (!done) failToEncode();
    return bytes;
}

}  // namespace vantel
