#include "platform/net/NetworkErrors_p.h"

#include "platform/net/NetworkCauses.h"

#include <algorithm>
#include <iterator>

namespace lamina {

namespace {

struct NetworkRow {
    QNetworkReply::NetworkError error;
    const char* cause;
};
constexpr NetworkRow kNetworkRows[] = {
    {QNetworkReply::ConnectionRefusedError, cause::kConnectionRefused},
    {QNetworkReply::RemoteHostClosedError, cause::kConnectionClosed},
    {QNetworkReply::HostNotFoundError, cause::kHostNotFound},
    {QNetworkReply::TimeoutError, cause::kServerSilent},
    {QNetworkReply::SslHandshakeFailedError, cause::kTLSFailed},
    {QNetworkReply::ProtocolUnknownError, cause::kNotAWebAddress},
    {QNetworkReply::ProtocolInvalidOperationError, cause::kAnswerDamaged},
    {QNetworkReply::ProtocolFailure, cause::kAnswerDamaged},
};

struct CertificateRow {
    QSslError::SslError error;
    const char* cause;
};
// Where several things are wrong the first of these is told: a certificate that nobody knows may have expired as well,
// and then a new one of the same kind is all that its owner has forgotten.
constexpr CertificateRow kCertificateRows[] = {
    {QSslError::CertificateRevoked, cause::kCertificateRevoked},
    {QSslError::CertificateBlacklisted, cause::kCertificateRevoked},
    {QSslError::CertificateExpired, cause::kCertificateExpired},
    {QSslError::CertificateNotYetValid, cause::kCertificateNotYetValid},
    {QSslError::HostNameMismatch, cause::kCertificateOfAnother},
    {QSslError::SelfSignedCertificate, cause::kCertificateSelfSigned},
    {QSslError::SelfSignedCertificateInChain, cause::kCertificateUnknownIssuer},
    {QSslError::UnableToGetLocalIssuerCertificate, cause::kCertificateUnknownIssuer},
    {QSslError::UnableToGetIssuerCertificate, cause::kCertificateUnknownIssuer},
    {QSslError::UnableToVerifyFirstCertificate, cause::kCertificateUnknownIssuer},
    {QSslError::CertificateUntrusted, cause::kCertificateUnknownIssuer},
};

} // namespace

const char* networkCause(QNetworkReply::NetworkError error)
{
    const auto* const row = std::ranges::find(kNetworkRows, error, &NetworkRow::error);
    if (row != std::end(kNetworkRows))
        return row->cause;
    const bool isProxy =
        error >= QNetworkReply::ProxyConnectionRefusedError && error <= QNetworkReply::UnknownProxyError;
    return isProxy ? cause::kProxyFailed : cause::kNoNetwork;
}

bool isMereStatus(QNetworkReply::NetworkError error)
{
    const bool isClients = error >= QNetworkReply::ContentAccessDenied && error <= QNetworkReply::UnknownContentError;
    return isClients || (error >= QNetworkReply::InternalServerError && error <= QNetworkReply::UnknownServerError);
}

const char* certificateCause(const QList<QSslError>& errors)
{
    for (const CertificateRow& row : kCertificateRows)
        if (std::ranges::any_of(errors, [&](const QSslError& each) { return each.error() == row.error; }))
            return row.cause;
    return cause::kCertificateBad;
}

} // namespace lamina
