#include <Platform/Digest.hpp>
#include <Platform/Fatal.hpp>

#include <openssl/evp.h>

#include <algorithm>
#include <cstdio>

namespace vantel {

SHA1Digest sha1Digest(std::string_view bytes) {
    unsigned char digest[EVP_MAX_MD_SIZE];
    unsigned int length = 0;
    if (EVP_Digest(bytes.data(), bytes.size(), digest, &length, EVP_sha1(), nullptr) != 1 ||
        length != SHA1Digest().size()) {
        fatalError("OpenSSL could not compute a SHA-1 digest");
    }
    SHA1Digest result;
    std::copy(digest, digest + length, result.begin());
    return result;
}

std::string sha1Hex(std::string_view bytes) {
    std::string text;
    for (std::uint8_t byte : sha1Digest(bytes)) {
        char pair[3];
        std::snprintf(pair, sizeof pair, "%02x", byte);
        text += pair;
    }
    return text;
}

}  // namespace vantel
