#include <Platform/Digest.hpp>
#include <Platform/Fatal.hpp>

#include <openssl/evp.h>

#include <cstdio>

namespace vantel {

std::string sha1Hex(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha1(), nullptr) != 1) {
        fatalError("OpenSSL could not compute a SHA-1 digest");
    }
    std::string text;
    text.reserve(2 * length);
    for (unsigned int i = 0; i < length; ++i) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", digest[i]);
        text += pair;
    }
    return text;
}

}  // namespace vantel
