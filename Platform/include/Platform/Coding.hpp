#pragma once

// Format-neutral coding: values read from property lists or JSON land in a
// CodingValue tree; types decode themselves from a Decoder positioned in that
// tree and encode themselves into an Encoder. The format front ends
// (PropertyListDecoder, JSONDecoder, ...) live in their own headers.
//
// This header gathers the parts; include one of them where that is enough.

#include <Platform/CodingValue.hpp>
#include <Platform/Decoding.hpp>
#include <Platform/Encoding.hpp>
