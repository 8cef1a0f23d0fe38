#include "ImageReaders.hpp"

#include <csetjmp>
#include <cstdio>
#include <cstring>
#include <memory>
#include <stdexcept>

#include <gif_lib.h>
#include <jpeglib.h>
#include <openjpeg.h>
#include <png.h>
#include <tiffio.h>

namespace vantel::testing {

namespace {

[[noreturn]] void reject(const std::string& format, const std::string& why) {
    throw std::runtime_error(format + " reader: " + why);
}

DecodedImage blank(int width, int height) {
    return DecodedImage{width, height, std::vector<std::uint8_t>(4 * static_cast<std::size_t>(width) * height)};
}

// A file in memory for the libraries' read callbacks.
struct Reader {
    const Data& bytes;
    std::size_t position = 0;

    std::size_t read(void* buffer, std::size_t size) {
        std::size_t count = std::min(size, bytes.size() - std::min(position, bytes.size()));
        if (count > 0) std::memcpy(buffer, bytes.data() + position, count);
        position += count;
        return count;
    }
};

std::uint32_t little32(const Data& b, std::size_t at) {
    return b[at] | b[at + 1] << 8 | b[at + 2] << 16 | std::uint32_t(b[at + 3]) << 24;
}

}  // namespace

DecodedImage readPNG(const Data& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (!png_image_begin_read_from_memory(&image, file.data(), file.size())) reject("PNG", image.message);
    image.format = PNG_FORMAT_RGBA;
    DecodedImage decoded = blank(static_cast<int>(image.width), static_cast<int>(image.height));
    if (!png_image_finish_read(&image, nullptr, decoded.rgba.data(), 0, nullptr)) reject("PNG", image.message);
    return decoded;
}

namespace {

tmsize_t tiffRead(thandle_t h, void* buffer, tmsize_t size) {
    return static_cast<tmsize_t>(static_cast<Reader*>(h)->read(buffer, static_cast<std::size_t>(size)));
}
tmsize_t tiffWrite(thandle_t, void*, tmsize_t) { return -1; }
toff_t tiffSeek(thandle_t h, toff_t offset, int whence) {
    auto* r = static_cast<Reader*>(h);
    r->position = (whence == SEEK_SET ? 0 : whence == SEEK_CUR ? r->position : r->bytes.size()) + offset;
    return r->position;
}
int tiffClose(thandle_t) { return 0; }
toff_t tiffSize(thandle_t h) { return static_cast<Reader*>(h)->bytes.size(); }
int tiffMap(thandle_t, void**, toff_t*) { return 0; }
void tiffUnmap(thandle_t, void*, toff_t) {}

template <class T>
T tiffField(TIFF* tiff, ttag_t tag) {
    T value{};
    if (!TIFFGetFieldDefaulted(tiff, tag, &value)) reject("TIFF", "missing tag " + std::to_string(tag));
    return value;
}

}  // namespace

DecodedImage readTIFF(const Data& file) {
    Reader reader{file};
    std::unique_ptr<TIFF, void (*)(TIFF*)> tiff(
        TIFFClientOpen("memory", "rm", &reader, tiffRead, tiffWrite, tiffSeek, tiffClose, tiffSize, tiffMap, tiffUnmap),
        TIFFClose);
    if (!tiff) reject("TIFF", "cannot open");
    if (tiffField<std::uint16_t>(tiff.get(), TIFFTAG_SAMPLESPERPIXEL) != 4 ||
        tiffField<std::uint16_t>(tiff.get(), TIFFTAG_BITSPERSAMPLE) != 8 ||
        tiffField<std::uint16_t>(tiff.get(), TIFFTAG_PHOTOMETRIC) != PHOTOMETRIC_RGB) {
        reject("TIFF", "not 8-bit RGBA");
    }
    std::uint16_t extraCount = 0;
    std::uint16_t* extra = nullptr;
    TIFFGetField(tiff.get(), TIFFTAG_EXTRASAMPLES, &extraCount, &extra);
    if (extraCount != 1 || extra[0] != EXTRASAMPLE_UNASSALPHA) reject("TIFF", "alpha is not unassociated");
    DecodedImage decoded = blank(static_cast<int>(tiffField<std::uint32_t>(tiff.get(), TIFFTAG_IMAGEWIDTH)),
                                 static_cast<int>(tiffField<std::uint32_t>(tiff.get(), TIFFTAG_IMAGELENGTH)));
    for (int y = 0; y < decoded.height; ++y) {
        if (TIFFReadScanline(tiff.get(), decoded.rgba.data() + 4 * static_cast<std::size_t>(y) * decoded.width,
                             static_cast<std::uint32_t>(y), 0) < 0) {
            reject("TIFF", "row " + std::to_string(y));
        }
    }
    return decoded;
}

DecodedImage readBMP(const Data& file) {
    if (file.size() < 122 || file[0] != 'B' || file[1] != 'M') reject("BMP", "no BM header");
    if (little32(file, 2) != file.size()) reject("BMP", "file size field");
    const std::size_t offset = little32(file, 10);
    if (little32(file, 14) < 108) reject("BMP", "not a V4 or later header");
    auto width = static_cast<int>(little32(file, 18));
    auto height = static_cast<int>(little32(file, 22));
    if (height <= 0 || (file[28] | file[29] << 8) != 32 || little32(file, 30) != 3) {
        reject("BMP", "not bottom-up 32-bit bit fields");
    }
    if (little32(file, 54) != 0x00ff0000 || little32(file, 58) != 0x0000ff00 || little32(file, 62) != 0x000000ff ||
        little32(file, 66) != 0xff000000) {
        reject("BMP", "unexpected channel masks");
    }
    if (offset + 4 * static_cast<std::size_t>(width) * height > file.size()) reject("BMP", "pixels cut short");
    DecodedImage decoded = blank(width, height);
    for (int y = 0; y < height; ++y) {
        const std::uint8_t* row = file.data() + offset + 4 * static_cast<std::size_t>(width) * (height - 1 - y);
        for (int x = 0; x < width; ++x) {
            std::uint8_t* out = decoded.rgba.data() + 4 * (static_cast<std::size_t>(y) * width + x);
            out[0] = row[4 * x + 2], out[1] = row[4 * x + 1], out[2] = row[4 * x], out[3] = row[4 * x + 3];
        }
    }
    return decoded;
}

DecodedImage readGIF(const Data& file) {
    Reader reader{file};
    int error = 0;
    auto readFn = [](GifFileType* gif, GifByteType* buffer, int size) {
        return static_cast<int>(static_cast<Reader*>(gif->UserData)->read(buffer, static_cast<std::size_t>(size)));
    };
    std::unique_ptr<GifFileType, void (*)(GifFileType*)> gif(DGifOpen(&reader, readFn, &error),
                                                             [](GifFileType* g) { DGifCloseFile(g, nullptr); });
    if (!gif) reject("GIF", GifErrorString(error));
    if (DGifSlurp(gif.get()) != GIF_OK || gif->ImageCount < 1) reject("GIF", GifErrorString(gif->Error));
    const SavedImage& frame = gif->SavedImages[0];
    const ColorMapObject* map = frame.ImageDesc.ColorMap ? frame.ImageDesc.ColorMap : gif->SColorMap;
    if (!map) reject("GIF", "no colour map");
    GraphicsControlBlock control{};
    control.TransparentColor = NO_TRANSPARENT_COLOR;
    DGifSavedExtensionToGCB(gif.get(), 0, &control);
    DecodedImage decoded = blank(gif->SWidth, gif->SHeight);
    for (std::size_t i = 0; i < static_cast<std::size_t>(decoded.width) * decoded.height; ++i) {
        int index = frame.RasterBits[i];
        if (index >= map->ColorCount) reject("GIF", "index outside the colour map");
        if (index == control.TransparentColor) continue;
        const GifColorType& c = map->Colors[index];
        std::uint8_t* out = decoded.rgba.data() + 4 * i;
        out[0] = c.Red, out[1] = c.Green, out[2] = c.Blue, out[3] = 255;
    }
    return decoded;
}

namespace {

struct JPEGErrorJump {
    jpeg_error_mgr manager;
    std::jmp_buf jump;
};

bool decompress(jpeg_decompress_struct& info, JPEGErrorJump& error, const Data& file, DecodedImage& decoded) {
    info.err = jpeg_std_error(&error.manager);
    error.manager.error_exit = [](j_common_ptr i) { std::longjmp(reinterpret_cast<JPEGErrorJump*>(i->err)->jump, 1); };
    if (setjmp(error.jump)) return false;
    jpeg_create_decompress(&info);
    jpeg_mem_src(&info, file.data(), static_cast<unsigned long>(file.size()));
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_RGBA;
    jpeg_start_decompress(&info);
    decoded.width = static_cast<int>(info.output_width);
    decoded.height = static_cast<int>(info.output_height);
    decoded.rgba.resize(4 * static_cast<std::size_t>(decoded.width) * decoded.height);
    while (info.output_scanline < info.output_height) {
        JSAMPLE* row = decoded.rgba.data() + 4 * static_cast<std::size_t>(info.output_scanline) * decoded.width;
        jpeg_read_scanlines(&info, &row, 1);
    }
    jpeg_finish_decompress(&info);
    return true;
}

}  // namespace

DecodedImage readJPEG(const Data& file) {
    jpeg_decompress_struct info{};
    JPEGErrorJump error{};
    DecodedImage decoded;
    bool done = decompress(info, error, file, decoded);
    jpeg_destroy_decompress(&info);
    if (!done) reject("JPEG", "libjpeg failed");
    return decoded;
}

DecodedImage readJPEG2000(const Data& file) {
    Reader reader{file};
    std::unique_ptr<opj_stream_t, void (*)(opj_stream_t*)> stream(opj_stream_create(1 << 16, OPJ_TRUE),
                                                                  opj_stream_destroy);
    opj_stream_set_user_data(stream.get(), &reader, nullptr);
    opj_stream_set_user_data_length(stream.get(), file.size());
    opj_stream_set_read_function(stream.get(), [](void* buffer, OPJ_SIZE_T size, void* user) -> OPJ_SIZE_T {
        std::size_t count = static_cast<Reader*>(user)->read(buffer, size);
        return count == 0 ? static_cast<OPJ_SIZE_T>(-1) : count;
    });
    opj_stream_set_skip_function(stream.get(), [](OPJ_OFF_T count, void* user) -> OPJ_OFF_T {
        static_cast<Reader*>(user)->position += static_cast<std::size_t>(count);
        return count;
    });
    opj_stream_set_seek_function(stream.get(), [](OPJ_OFF_T at, void* user) -> OPJ_BOOL {
        static_cast<Reader*>(user)->position = static_cast<std::size_t>(at);
        return OPJ_TRUE;
    });
    std::unique_ptr<opj_codec_t, void (*)(opj_codec_t*)> codec(opj_create_decompress(OPJ_CODEC_JP2), opj_destroy_codec);
    opj_dparameters_t parameters;
    opj_set_default_decoder_parameters(&parameters);
    opj_image_t* raw = nullptr;
    if (!opj_setup_decoder(codec.get(), &parameters) || !opj_read_header(stream.get(), codec.get(), &raw)) {
        reject("JPEG 2000", "cannot read the header");
    }
    std::unique_ptr<opj_image_t, void (*)(opj_image_t*)> image(raw, opj_image_destroy);
    if (!opj_decode(codec.get(), stream.get(), image.get()) || !opj_end_decompress(codec.get(), stream.get())) {
        reject("JPEG 2000", "cannot decode");
    }
    if (image->numcomps != 4 || !image->comps[3].alpha || image->color_space != OPJ_CLRSPC_SRGB) {
        reject("JPEG 2000", "not sRGB with alpha");
    }
    DecodedImage decoded = blank(static_cast<int>(image->comps[0].w), static_cast<int>(image->comps[0].h));
    for (std::size_t i = 0; i < decoded.rgba.size() / 4; ++i) {
        for (int c = 0; c < 4; ++c) {
            if (image->comps[c].prec != 8) reject("JPEG 2000", "not 8 bits per component");
            decoded.rgba[4 * i + c] = static_cast<std::uint8_t>(image->comps[c].data[i]);
        }
    }
    return decoded;
}

}  // namespace vantel::testing
