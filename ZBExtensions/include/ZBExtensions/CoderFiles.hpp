#pragma once

// Decoding values straight from files and encoding them straight into files
// with the JSON and property-list coders. Read, decoding, encoding and write
// errors pass through unchanged.

#include <Platform/FileIO.hpp>
#include <Platform/JSON.hpp>
#include <Platform/PropertyList.hpp>
#include <Platform/URL.hpp>

#include <concepts>
#include <vector>

namespace vantel {

template <class D>
concept FileDecoder = std::same_as<D, PropertyListDecoder> || std::same_as<D, JSONDecoder>;
template <class E>
concept FileEncoder = std::same_as<E, PropertyListEncoder> || std::same_as<E, JSONEncoder>;

// The whole file, decoded as the decoder is configured.
template <class T, FileDecoder D>
T decode(const D& decoder, const URL& url) {
    return decoder.template decode<T>(readData(url));
}

// Each file in order; the first failure is thrown and nothing is returned.
template <class T, FileDecoder D>
std::vector<T> decode(const D& decoder, const std::vector<URL>& urls) {
    std::vector<T> values;
    values.reserve(urls.size());
    for (const URL& url : urls) values.push_back(decode<T>(decoder, url));
    return values;
}

// Encodes with the encoder's settings and overwrites the file in place; the
// folder is not created.
template <FileEncoder E, class T>
void write(const E& encoder, const T& value, const URL& url) {
    writeData(encoder.encode(value), url);
}

}  // namespace vantel
