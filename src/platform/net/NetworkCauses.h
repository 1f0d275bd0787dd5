#pragma once

/// Why something can't be had from the network, in one wording each.
namespace lamina::cause {

inline constexpr const char* kNotAWebAddress = "this is no address of a web page or file";
inline constexpr const char* kNoNetwork = "there is no network";
inline constexpr const char* kHostNotFound = "the server was not found";
inline constexpr const char* kConnectionRefused = "the server refuses connections";
inline constexpr const char* kConnectionClosed = "the server closed the connection";
inline constexpr const char* kServerSilent = "the server doesn't answer any more";
inline constexpr const char* kProxyFailed = "the proxy doesn't let it through";
inline constexpr const char* kDownloadTooLong = "the download takes too long";
inline constexpr const char* kAnswerTooLarge = "the answer is too large";
inline constexpr const char* kAnswerCut = "the answer ends too early";
inline constexpr const char* kAnswerDamaged = "the answer can't be understood";
inline constexpr const char* kTooManyRedirects = "the address leads on too often";
inline constexpr const char* kInsecureRedirect = "the address leads from a secure connection to an open one";
inline constexpr const char* kForeignRedirect = "the address leads to something that is no web page or file";

inline constexpr const char* kNoTLS = "secure connections are not supported here";
inline constexpr const char* kTLSFailed = "a secure connection could not be made";
inline constexpr const char* kCertificateExpired = "the server's certificate has expired";
inline constexpr const char* kCertificateNotYetValid = "the server's certificate is not valid yet";
inline constexpr const char* kCertificateOfAnother = "the server's certificate belongs to another server";
inline constexpr const char* kCertificateRevoked = "the server's certificate was withdrawn";
inline constexpr const char* kCertificateSelfSigned = "the server's certificate is vouched for by nobody but itself";
inline constexpr const char* kCertificateUnknownIssuer = "the server's certificate comes from an unknown authority";
inline constexpr const char* kCertificateBad = "the server's certificate can't be trusted";

} // namespace lamina::cause
