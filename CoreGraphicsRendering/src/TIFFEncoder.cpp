// TIFF through libtiff, written into memory: RGBA with unassociated
// (straight) alpha, Deflate compression with horizontal differencing, which
// every TIFF reader in use understands.

#include "Encoders.hpp"

#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace vantel {

namespace {

// The file libtiff writes into. libtiff seeks back to patch offsets, so
// writes land at `position`, growing the bytes as needed.
struct MemoryFile {
    Data bytes;
    std::uint64_t position = 0;

    static MemoryFile& of(thandle_t handle) { return *static_cast<MemoryFile*>(handle); }

    static tmsize_t read(thandle_t handle, void* buffer, tmsize_t size) {
        MemoryFile& file = of(handle);
        if (file.position >= file.bytes.size()) return 0;
        std::size_t count = std::min<std::size_t>(static_cast<std::size_t>(size), file.bytes.size() - file.position);
        std::memcpy(buffer, file.bytes.data() + file.position, count);
        file.position += count;
        return static_cast<tmsize_t>(count);
    }

    static tmsize_t write(thandle_t handle, void* buffer, tmsize_t size) {
        MemoryFile& file = of(handle);
        std::size_t end = file.position + static_cast<std::size_t>(size);
        if (end > file.bytes.size()) file.bytes.resize(end);
        std::memcpy(file.bytes.data() + file.position, buffer, static_cast<std::size_t>(size));
        file.position = end;
        return size;
    }

    static toff_t seek(thandle_t handle, toff_t offset, int whence) {
        MemoryFile& file = of(handle);
        std::uint64_t base = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? file.position : file.bytes.size();
        file.position = base + offset;
        return file.position;
    }

    static int close(thandle_t) { return 0; }
    static toff_t size(thandle_t handle) { return of(handle).bytes.size(); }
    static int map(thandle_t, void**, toff_t*) { return 0; }
    static void unmap(thandle_t, void*, toff_t) {}
};

// libtiff's messages would go to standard error; a failure shows instead as
// a failed call, which becomes the encoder error.
int ignoreMessage(TIFF*, void*, const char*, const char*, va_list) { return 1; }

struct CloseTIFF {
    void operator()(TIFF* tiff) const { TIFFClose(tiff); }
};
struct FreeOptions {
    void operator()(TIFFOpenOptions* options) const { TIFFOpenOptionsFree(options); }
};

using TIFFHandle = std::unique_ptr<TIFF, CloseTIFF>;

TIFFHandle openForWriting(MemoryFile& file) {
    std::unique_ptr<TIFFOpenOptions, FreeOptions> options(TIFFOpenOptionsAlloc());
    TIFFOpenOptionsSetErrorHandlerExtR(options.get(), ignoreMessage, nullptr);
    TIFFOpenOptionsSetWarningHandlerExtR(options.get(), ignoreMessage, nullptr);
    // "m": never memory-map the (in-memory) file.
    return TIFFHandle(TIFFClientOpenExt("image.tiff", "wm", &file, MemoryFile::read, MemoryFile::write,
                                        MemoryFile::seek, MemoryFile::close, MemoryFile::size, MemoryFile::map,
                                        MemoryFile::unmap, options.get()));
}

bool describe(TIFF* tiff, const ImageView& image) {
    const std::uint16_t extraSamples[] = {EXTRASAMPLE_UNASSALPHA};
    return TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, static_cast<std::uint32_t>(image.width)) &&
           TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, static_cast<std::uint32_t>(image.height)) &&
           TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 4) && TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8) &&
           TIFFSetField(tiff, TIFFTAG_EXTRASAMPLES, 1, extraSamples) &&
           TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB) &&
           TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG) &&
           TIFFSetField(tiff, TIFFTAG_ORIENTATION, ORIENTATION_TOPLEFT) &&
           TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_ADOBE_DEFLATE) &&
           TIFFSetField(tiff, TIFFTAG_PREDICTOR, PREDICTOR_HORIZONTAL) &&
           TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
}

bool writeRows(TIFF* tiff, const ImageView& image) {
    std::vector<std::uint32_t> row(static_cast<std::size_t>(image.width));
    for (int y = 0; y < image.height; ++y) {
        pixels::straightRow(image, y, row.data());
        if (TIFFWriteScanline(tiff, row.data(), static_cast<std::uint32_t>(y), 0) < 0) return false;
    }
    return true;
}

}  // namespace

Data encodeTIFF(const ImageView& image) {
    MemoryFile file;
    TIFFHandle tiff = openForWriting(file);
    if (!tiff || !describe(tiff.get(), image) || !writeRows(tiff.get(), image)) failToEncode();
    // Flushing writes the directory; TIFFClose would not report its failure.
    if (!TIFFFlush(tiff.get())) failToEncode();
    tiff.reset();
    return std::move(file.bytes);
}

}  // namespace vantel
