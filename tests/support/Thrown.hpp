#pragma once

#include <gtest/gtest.h>

#include <stdexcept>

namespace vantel::testing {

// The error of type Error that `body` throws, for checking its details. When
// `body` throws nothing the test fails and is ended by an exception; another
// kind of exception passes through and ends it as well.
template <class Error, class Body>
Error thrownBy(Body&& body) {
    try {
        body();
    } catch (const Error& error) {
        return error;
    }
    ADD_FAILURE() << "nothing was thrown";
    throw std::logic_error("nothing was thrown");
}

}  // namespace vantel::testing
