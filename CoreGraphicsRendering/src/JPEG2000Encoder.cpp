// JPEG 2000 through openjpeg: a JP2 file holding four 8-bit components
// (sRGB plus straight alpha), with openjpeg's default settings, which are
// lossless (reversible 5/3 wavelet, one quality layer).

#include "Encoders.hpp"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

namespace vantel {

namespace {

// The output stream: openjpeg seeks back to fill in box lengths.
struct MemoryStream {
    Data bytes;
    std::uint64_t position = 0;

    static MemoryStream& of(void* user) { return *static_cast<MemoryStream*>(user); }

    static OPJ_SIZE_T write(void* buffer, OPJ_SIZE_T size, void* user) {
        MemoryStream& stream = of(user);
        std::size_t end = stream.position + size;
        if (end > stream.bytes.size()) stream.bytes.resize(end);
        std::memcpy(stream.bytes.data() + stream.position, buffer, size);
        stream.position = end;
        return size;
    }

    static OPJ_OFF_T skip(OPJ_OFF_T count, void* user) {
        of(user).position += static_cast<std::uint64_t>(count);
        return count;
    }

    static OPJ_BOOL seek(OPJ_OFF_T offset, void* user) {
        of(user).position = static_cast<std::uint64_t>(offset);
        return OPJ_TRUE;
    }
};

void ignoreMessage(const char*, void*) {}

struct DestroyImage {
    void operator()(opj_image_t* image) const { opj_image_destroy(image); }
};
struct DestroyCodec {
    void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
struct DestroyStream {
    void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};

std::unique_ptr<opj_image_t, DestroyImage> makeImage(const ImageView& view) {
    opj_image_cmptparm_t components[4]{};
    for (auto& component : components) {
        component.dx = component.dy = 1;
        component.w = static_cast<OPJ_UINT32>(view.width);
        component.h = static_cast<OPJ_UINT32>(view.height);
        component.prec = 8;
        component.sgnd = 0;
    }
    std::unique_ptr<opj_image_t, DestroyImage> image(opj_image_create(4, components, OPJ_CLRSPC_SRGB));
    if (!image) return image;
    image->x1 = static_cast<OPJ_UINT32>(view.width);
    image->y1 = static_cast<OPJ_UINT32>(view.height);
    image->comps[3].alpha = 1;
    std::vector<std::uint32_t> words(static_cast<std::size_t>(view.width));
    const auto* rgba = reinterpret_cast<const std::uint8_t*>(words.data());
    std::size_t at = 0;
    for (int y = 0; y < view.height; ++y) {
        pixels::straightRow(view, y, words.data());
        for (std::size_t i = 0; i < 4 * words.size(); i += 4, ++at) {
            for (int c = 0; c < 4; ++c) image->comps[c].data[at] = rgba[i + c];
        }
    }
    return image;
}

// Each resolution level halves the picture; the smallest must keep a pixel.
int resolutionLevels(const ImageView& view) {
    int levels = 1;
    for (int side = std::min(view.width, view.height); side > 1 && levels < 6; side /= 2) ++levels;
    return levels;
}

std::unique_ptr<opj_codec_t, DestroyCodec> makeEncoder(opj_image_t* image, const ImageView& view) {
    std::unique_ptr<opj_codec_t, DestroyCodec> codec(opj_create_compress(OPJ_CODEC_JP2));
    if (!codec) return codec;
    opj_set_error_handler(codec.get(), ignoreMessage, nullptr);
    opj_set_warning_handler(codec.get(), ignoreMessage, nullptr);
    opj_set_info_handler(codec.get(), ignoreMessage, nullptr);
    opj_cparameters_t parameters;
    opj_set_default_encoder_parameters(&parameters);
    parameters.numresolution = resolutionLevels(view);
    parameters.tcp_mct = 1;  // decorrelate R, G, B as the format's colour transform intends
    if (!opj_setup_encoder(codec.get(), &parameters, image)) codec.reset();
    return codec;
}

std::unique_ptr<opj_stream_t, DestroyStream> makeStream(MemoryStream& memory) {
    std::unique_ptr<opj_stream_t, DestroyStream> stream(opj_stream_create(OPJ_J2K_STREAM_CHUNK_SIZE, OPJ_FALSE));
    if (!stream) return stream;
    opj_stream_set_user_data(stream.get(), &memory, nullptr);
    opj_stream_set_write_function(stream.get(), MemoryStream::write);
    opj_stream_set_skip_function(stream.get(), MemoryStream::skip);
    opj_stream_set_seek_function(stream.get(), MemoryStream::seek);
    return stream;
}

}  // namespace

Data encodeJPEG2000(const ImageView& view) {
    auto image = makeImage(view);
    if (!image) failToEncode();
    auto codec = makeEncoder(image.get(), view);
    MemoryStream memory;
    auto stream = makeStream(memory);
    if (!codec || !stream) failToEncode();
    bool encoded = opj_start_compress(codec.get(), image.get(), stream.get()) &&
                   opj_encode(codec.get(), stream.get()) && opj_end_compress(codec.get(), stream.get());
    if (!encoded) failToEncode();
    return std::move(memory.bytes);
}

}  // namespace vantel
