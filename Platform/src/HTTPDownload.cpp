#include <Platform/HTTPDownload.hpp>

#include <Platform/UUID.hpp>

#include <curl/curl.h>
#include <dlfcn.h>
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <utility>

namespace vantel {

namespace {

using Reason = DownloadError::Reason;

// libcurl is loaded on the first download, not linked. Debian has no static
// archive of Kerberos and builds libcurl with it, LDAP and RTMP, so even its
// archive brought 21 more shared libraries (GnuTLS, Kerberos, SASL, ...)
// into every start of the command, thumbnails included: `vantel --version`
// took 30.6 ms of CPU instead of 11.8, for a feature few runs use. Both
// Debian builds of libcurl share one ABI.
struct CurlLibrary {
    decltype(&curl_global_init) globalInit;
    decltype(&curl_easy_init) easyInit;
    decltype(&curl_easy_setopt) setopt;
    decltype(&curl_easy_perform) perform;
    decltype(&curl_easy_getinfo) getinfo;
    decltype(&curl_easy_cleanup) cleanup;
    decltype(&curl_easy_strerror) strerror;
};

template <class Function>
bool bind(void* library, const char* name, Function& function) {
    function = reinterpret_cast<Function>(::dlsym(library, name));
    return function != nullptr;
}

std::optional<CurlLibrary> loadCurl() {
    void* library = nullptr;
    for (const char* name : {"libcurl.so.4", "libcurl-gnutls.so.4"}) {
        library = ::dlopen(name, RTLD_NOW | RTLD_LOCAL);
        if (library != nullptr) break;
    }
    if (library == nullptr) return std::nullopt;
    CurlLibrary curl{};
    bool complete = bind(library, "curl_global_init", curl.globalInit) &&
                    bind(library, "curl_easy_init", curl.easyInit) && bind(library, "curl_easy_setopt", curl.setopt) &&
                    bind(library, "curl_easy_perform", curl.perform) &&
                    bind(library, "curl_easy_getinfo", curl.getinfo) &&
                    bind(library, "curl_easy_cleanup", curl.cleanup) &&
                    bind(library, "curl_easy_strerror", curl.strerror);
    if (!complete) return std::nullopt;
    // The global set-up must not race with the first handles; it runs once.
    if (curl.globalInit(CURL_GLOBAL_DEFAULT) != CURLE_OK) return std::nullopt;
    return curl;  // stays loaded for the life of the process
}

const CurlLibrary& curlLibrary() {
    static const std::optional<CurlLibrary> curl = loadCurl();
    if (!curl) throw DownloadError(Reason::other, "cannot load libcurl (libcurl.so.4); install libcurl4 to download");
    return *curl;
}

struct CurlHandleDeleter {
    void operator()(CURL* handle) const { curlLibrary().cleanup(handle); }
};
using CurlHandle = std::unique_ptr<CURL, CurlHandleDeleter>;

// Where the body goes, and how much of it has come.
struct BodySink {
    int fd = -1;
    std::uint64_t received = 0;
    std::optional<std::uint64_t> maximumBytes;
    bool overLimit = false;
    int writeErrno = 0;
};

bool writeAll(int fd, const char* bytes, std::size_t size, int& error) {
    while (size > 0) {
        ssize_t count = ::write(fd, bytes, size);
        if (count < 0) {
            if (errno == EINTR) continue;
            error = errno;
            return false;
        }
        bytes += count;
        size -= static_cast<std::size_t>(count);
    }
    return true;
}

// Returning less than was given makes libcurl stop the transfer.
std::size_t receiveBody(char* bytes, std::size_t size, std::size_t count, void* context) {
    auto& sink = *static_cast<BodySink*>(context);
    std::size_t length = size * count;
    sink.received += length;
    if (sink.maximumBytes && sink.received > *sink.maximumBytes) {
        sink.overLimit = true;
        return 0;
    }
    return writeAll(sink.fd, bytes, length, sink.writeErrno) ? length : 0;
}

struct TemporaryFile {
    std::filesystem::path path;
    CleanupOnSignal cleanup;
    int fd = -1;
};

// $TMPDIR, or /tmp when it is unset or empty. Not checked here: a folder that
// is not there fails when the file is made, and is named then.
std::filesystem::path temporaryFolder() {
    const char* folder = std::getenv("TMPDIR");
    return folder != nullptr && folder[0] != '\0' ? folder : "/tmp";
}

TemporaryFile createTemporaryFile() {
    std::filesystem::path folder = temporaryFolder();
    TemporaryFile file;
    for (int attempt = 0; attempt < 16; ++attempt) {
        file.path = folder / ("vantel-download-" + UUID::random().uuidString());
        file.fd = createRemovedOnSignal(file.path, O_WRONLY | O_CLOEXEC, 0600, file.cleanup);
        if (file.fd >= 0) return file;
        if (errno != EEXIST) break;
    }
    throw DownloadError(Reason::fileError, "cannot make a file in the temporary folder " + folder.string() +
                                               " (TMPDIR): " + std::strerror(errno));
}

std::string seconds(std::chrono::milliseconds duration) {
    auto count = duration.count();
    if (count % 1000 == 0) return std::to_string(count / 1000) + (count == 1000 ? " second" : " seconds");
    return std::to_string(count) + " ms";
}

DownloadError errorFor(CURLcode code, const char* detail, const BodySink& sink, const DownloadLimits& limits) {
    std::string why = detail[0] != '\0' ? detail : curlLibrary().strerror(code);
    if (sink.overLimit || code == CURLE_FILESIZE_EXCEEDED) {
        return {Reason::tooLarge, "larger than the limit of " + std::to_string(limits.maximumBytes.value_or(0)) +
                                      " bytes; the transfer was stopped"};
    }
    switch (code) {
    case CURLE_PEER_FAILED_VERIFICATION:
        return {Reason::certificateRefused, "the server's certificate was refused (" + why + ")"};
    case CURLE_OPERATION_TIMEDOUT:
        return {Reason::timedOut, "no complete answer within " + seconds(limits.timeout)};
    case CURLE_COULDNT_CONNECT:
        return {Reason::connectionRefused, "the connection was refused (" + why + ")"};
    case CURLE_COULDNT_RESOLVE_HOST:
        return {Reason::hostNotFound, "the host was not found (" + why + ")"};
    case CURLE_SSL_CONNECT_ERROR:
        // OpenSSL's own words ("wrong version number") name a record layer,
        // not the usual cause: an https address for a plain http port.
        return {Reason::other, "the TLS handshake failed (is it an http server?)"};
    case CURLE_TOO_MANY_REDIRECTS:
        return {Reason::tooManyRedirects, "more than " + std::to_string(limits.maximumRedirects) + " redirects"};
    case CURLE_WRITE_ERROR:
        if (sink.writeErrno != 0) {
            return {Reason::fileError, std::string("cannot write the temporary file: ") + std::strerror(sink.writeErrno)};
        }
        break;
    default:
        break;
    }
    return {Reason::other, why};
}

void configure(CURL* handle, const URL& url, const DownloadLimits& limits, BodySink& sink, char* errorText) {
    auto set = curlLibrary().setopt;
    std::string address = url.absoluteString();
    set(handle, CURLOPT_URL, address.c_str());  // libcurl copies strings
    set(handle, CURLOPT_PROTOCOLS_STR, "http,https");
    set(handle, CURLOPT_REDIR_PROTOCOLS_STR, "http,https");
    set(handle, CURLOPT_FOLLOWLOCATION, 1L);
    set(handle, CURLOPT_MAXREDIRS, limits.maximumRedirects);
    set(handle, CURLOPT_SSL_VERIFYPEER, 1L);
    set(handle, CURLOPT_SSL_VERIFYHOST, 2L);
    if (limits.certificateAuthorities) {
        set(handle, CURLOPT_CAINFO, limits.certificateAuthorities->c_str());
    }
    set(handle, CURLOPT_TIMEOUT_MS, static_cast<long>(limits.timeout.count()));
    set(handle, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(limits.connectTimeout.count()));
    set(handle, CURLOPT_NOSIGNAL, 1L);  // timeouts without SIGALRM, safe on threads
    if (limits.maximumBytes) {
        // Refuses at once when the server announces a larger body.
        set(handle, CURLOPT_MAXFILESIZE_LARGE, static_cast<curl_off_t>(*limits.maximumBytes));
    }
    set(handle, CURLOPT_USERAGENT, "vantel");
    set(handle, CURLOPT_WRITEFUNCTION, receiveBody);
    set(handle, CURLOPT_WRITEDATA, &sink);
    set(handle, CURLOPT_ERRORBUFFER, errorText);
}

HTTPResponse responseOf(CURL* handle, const URL& requested) {
    auto info = curlLibrary().getinfo;
    HTTPResponse response{requested, 0, "", std::nullopt};
    info(handle, CURLINFO_RESPONSE_CODE, &response.statusCode);
    char* effective = nullptr;
    if (info(handle, CURLINFO_EFFECTIVE_URL, &effective) == CURLE_OK && effective != nullptr) {
        if (auto url = URL::fromString(effective)) response.url = *url;
    }
    char* contentType = nullptr;
    if (info(handle, CURLINFO_CONTENT_TYPE, &contentType) == CURLE_OK && contentType != nullptr) {
        std::string type = contentType;
        response.mimeType = type.substr(0, type.find(';'));
    }
    curl_off_t length = -1;
    if (info(handle, CURLINFO_CONTENT_LENGTH_DOWNLOAD_T, &length) == CURLE_OK && length >= 0) {
        response.expectedContentLength = static_cast<std::uint64_t>(length);
    }
    return response;
}

}  // namespace

std::string statusText(long statusCode) {
    static const std::pair<long, const char*> phrases[] = {
        {301, "Moved Permanently"}, {302, "Found"}, {304, "Not Modified"}, {400, "Bad Request"},
        {401, "Unauthorized"}, {403, "Forbidden"}, {404, "Not Found"}, {405, "Method Not Allowed"},
        {408, "Request Timeout"}, {410, "Gone"}, {429, "Too Many Requests"}, {500, "Internal Server Error"},
        {501, "Not Implemented"}, {502, "Bad Gateway"}, {503, "Service Unavailable"}, {504, "Gateway Timeout"}};
    for (const auto& [code, phrase] : phrases) {
        if (code == statusCode) return std::to_string(statusCode) + " " + phrase;
    }
    return std::to_string(statusCode);
}

HTTPDownload downloadToTemporaryFile(const URL& url, const DownloadLimits& limits) {
    if (url.isFileURL()) throw DownloadError(Reason::other, "only http and https addresses are downloaded");
    const CurlLibrary& curl = curlLibrary();
    CurlHandle handle(curl.easyInit());
    if (!handle) throw DownloadError(Reason::other, "cannot start a transfer");
    TemporaryFile file = createTemporaryFile();
    BodySink sink{file.fd, 0, limits.maximumBytes, false, 0};
    char errorText[CURL_ERROR_SIZE] = {};
    configure(handle.get(), url, limits, sink, errorText);
    CURLcode code = curl.perform(handle.get());
    bool closed = ::close(file.fd) == 0;
    if (code != CURLE_OK || !closed) {
        int closeErrno = errno;
        std::error_code ignored;
        std::filesystem::remove(file.path, ignored);
        if (code != CURLE_OK) throw errorFor(code, errorText, sink, limits);
        throw DownloadError(Reason::fileError, std::string("cannot write the temporary file: ") + std::strerror(closeErrno));
    }
    return {file.path, responseOf(handle.get(), url), std::move(file.cleanup)};
}

}  // namespace vantel
