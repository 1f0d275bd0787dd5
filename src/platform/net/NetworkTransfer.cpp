#include "platform/net/NetworkTransfer_p.h"

#include "platform/net/NetworkCauses.h"
#include "platform/net/NetworkErrors_p.h"
#include "platform/net/WebAddress.h"
#include "platform/net/WebAddress_p.h"

#include <QNetworkAccessManager>
#include <QNetworkRequest>
#include <QSslSocket>

#include <algorithm>
#include <limits>
#include <utility>

namespace lamina {

namespace {

int milliseconds(double seconds)
{
    constexpr double kLongest = std::numeric_limits<int>::max();
    return seconds >= 0 ? static_cast<int>(std::min(seconds * 1000, kLongest)) : 0;
}

/// Nothing of the user's goes along: no cookies, credentials or languages.
QNetworkRequest plainRequest(const QUrl& address)
{
    QNetworkRequest request(address);
    for (const auto attribute :
         {QNetworkRequest::CookieLoadControlAttribute, QNetworkRequest::CookieSaveControlAttribute,
          QNetworkRequest::AuthenticationReuseAttribute})
        request.setAttribute(attribute, QNetworkRequest::Manual);
    request.setAttribute(QNetworkRequest::RedirectPolicyAttribute, QNetworkRequest::ManualRedirectPolicy);
    // It has no way to hold a server back that sends faster than is read.
    request.setAttribute(QNetworkRequest::Http2AllowedAttribute, false);
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("lamina/" LAMINA_VERSION));
    request.setRawHeader("Accept-Encoding", "gzip"); // said by us it is left to us, piece by piece
    request.setRawHeader("Accept-Language", "*");
    return request;
}

} // namespace

QUrl webAddress(const std::string& text)
{
    QUrl address(QString::fromStdString(text));
    address.setUserInfo({});
    address.setFragment({});
    return isWebAddress(address) ? address : QUrl();
}

NetworkTransfer::NetworkTransfer(NSURLRequest request, std::shared_ptr<TransferReceiver> receiver,
                                 QNetworkAccessManager& manager, QObject* parent)
    : QObject(parent)
    , m_request(std::move(request))
    , m_receiver(std::move(receiver))
    , m_manager(manager)
{
    m_silence.setSingleShot(true);
    connect(&m_silence, &QTimer::timeout, this, [this] { fail(cause::kServerSilent); });
    m_whole.setSingleShot(true);
    connect(&m_whole, &QTimer::timeout, this, [this] { fail(cause::kDownloadTooLong); });
    m_whole.start(milliseconds(m_request.mostSeconds));
    get(webAddress(m_request.URL));
}

NetworkTransfer::~NetworkTransfer()
{
    dropReply();
}

void NetworkTransfer::get(const QUrl& address)
{
    m_address = address;
    m_silence.start(milliseconds(std::min(m_request.timeoutInterval, NSURLRequest::kMostSecondsToHead)));
    if (address.scheme() == kSecureScheme && !QSslSocket::supportsSsl())
        return fail(cause::kNoTLS);
    m_reply = m_manager.get(plainRequest(address));
    m_reply->setReadBufferSize(BodyReader::kPiece);
    connect(m_reply, &QNetworkReply::sslErrors, this,
            [this](const QList<QSslError>& errors) { m_certificateCause = certificateCause(errors); });
    connect(m_reply, &QNetworkReply::metaDataChanged, this, &NetworkTransfer::pump);
    connect(m_reply, &QNetworkReply::readyRead, this, &NetworkTransfer::pump);
    connect(m_reply, &QNetworkReply::finished, this, &NetworkTransfer::pump);
}

void NetworkTransfer::dropReply()
{
    m_body.reset();
    if (!m_reply)
        return;
    m_reply->disconnect(this);
    m_reply->abort();
    m_reply->deleteLater();
    m_reply.clear();
}

void NetworkTransfer::resume()
{
    if (!m_isOver)
        pump();
}

void NetworkTransfer::readHead()
{
    const QVariant status = m_reply->attribute(QNetworkRequest::HttpStatusCodeAttribute);
    if (status.isValid() && !followRedirect(status.toInt()))
        respond(status.toInt());
}

bool NetworkTransfer::followRedirect(int status)
{
    constexpr int kRedirections[] = {301, 302, 303, 307, 308};
    const QByteArray location = m_reply->rawHeader("Location");
    if (std::ranges::find(kRedirections, status) == std::end(kRedirections) || location.isEmpty())
        return false;
    const QUrl next = m_address.resolved(QUrl::fromEncoded(location));
    const bool wasSecure = m_address.scheme() == kSecureScheme;
    dropReply();
    if (++m_redirects > m_request.mostRedirects)
        fail(cause::kTooManyRedirects);
    else if (!isWebAddress(next))
        fail(cause::kForeignRedirect);
    else if (wasSecure && next.scheme() != kSecureScheme)
        fail(cause::kInsecureRedirect);
    else
        get(webAddress(next.toString(QUrl::FullyEncoded).toStdString()));
    return true;
}

void NetworkTransfer::respond(int status)
{
    const QByteArray packing = m_reply->rawHeader("Content-Encoding").trimmed().toLower();
    const bool isPacked = packing == "gzip" || packing == "x-gzip";
    if (!isPacked && !packing.isEmpty() && packing != "identity")
        return fail(cause::kAnswerDamaged);
    bool isNumber = false;
    const qint64 length = m_reply->rawHeader("Content-Length").trimmed().toLongLong(&isNumber);
    if (isNumber && length >= 0 && !m_reply->hasRawHeader("Transfer-Encoding"))
        m_claimedLength = length;
    if (m_claimedLength > m_request.mostBytes)
        return fail(cause::kAnswerTooLarge);
    m_body = std::make_unique<BodyReader>(*m_reply, isPacked);
    m_receiver->takeResponse({.URL = m_address.toString(QUrl::FullyEncoded).toStdString(),
                              .statusCode = status,
                              .expectedContentLength = isPacked ? -1 : m_claimedLength});
}

void NetworkTransfer::pump()
{
    if (!m_body)
        readHead();
    if (m_body)
        m_silence.start(milliseconds(m_request.timeoutInterval));
    while (m_body) {
        if (!m_receiver->wantsMore())
            return m_silence.stop(); // it is us who are silent
        std::vector<std::uint8_t> piece = m_body->read();
        if (m_body->isDamaged())
            return fail(cause::kAnswerDamaged);
        if (m_body->taken() > m_request.mostBytes + static_cast<std::int64_t>(BodyReader::kPiece))
            return fail(cause::kAnswerTooLarge); // packed, and yet nothing
        if (piece.empty())
            break;
        m_given += static_cast<std::int64_t>(piece.size());
        if (m_given > m_request.mostBytes)
            return fail(cause::kAnswerTooLarge);
        m_receiver->takeData(std::move(piece));
    }
    if (m_reply && m_reply->isFinished())
        conclude();
}

void NetworkTransfer::conclude()
{
    const QNetworkReply::NetworkError error = m_reply->error();
    if (error != QNetworkReply::NoError && !isMereStatus(error)) {
        if (m_certificateCause)
            return fail(m_certificateCause);
        return fail(m_body && error == QNetworkReply::RemoteHostClosedError ? cause::kAnswerCut : networkCause(error));
    }
    if (!m_body)
        return fail(cause::kAnswerDamaged);
    const bool isShort = m_claimedLength >= 0 && m_body->taken() < m_claimedLength;
    if (isShort || !m_body->isWhole())
        return fail(cause::kAnswerCut);
    m_isOver = true;
    m_receiver->takeEnd();
    deleteLater();
}

void NetworkTransfer::fail(const char* cause)
{
    if (std::exchange(m_isOver, true))
        return;
    m_silence.stop();
    m_whole.stop();
    dropReply();
    m_receiver->takeFailure({shownAddress(m_address.toString().toStdString()), cause});
    deleteLater();
}

} // namespace lamina
