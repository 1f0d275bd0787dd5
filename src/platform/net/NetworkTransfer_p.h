#pragma once

#include "platform/base/Result.h"
#include "platform/net/BodyReader_p.h"
#include "platform/net/NSURLConnection.h"

#include <QNetworkReply>
#include <QObject>
#include <QPointer>
#include <QTimer>
#include <QUrl>

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class QNetworkAccessManager;

namespace lamina {

/// Hears of a transfer, on the network's thread: one head, pieces, the one end or the other.
class TransferReceiver {
public:
    virtual ~TransferReceiver() = default;
    virtual void takeResponse(const NSURLResponse& response) = 0;
    virtual void takeData(std::vector<std::uint8_t> data) = 0;
    virtual void takeEnd() = 0;
    virtual void takeFailure(const Error& error) = 0;
    /// Where false, it calls `resume` as soon as that has changed.
    virtual bool wantsMore() = 0;
};

/// The address of a request; invalid where it is none that is loaded.
QUrl webAddress(const std::string& text);

/// One load on the network's thread, through its redirections. It destroys itself after its end; destroyed before, it
/// ends without a word.
class NetworkTransfer : public QObject {
public:
    NetworkTransfer(NSURLRequest request, std::shared_ptr<TransferReceiver> receiver, QNetworkAccessManager& manager,
                    QObject* parent);
    ~NetworkTransfer() override;

    /// The receiver wants more again.
    void resume();

private:
    void get(const QUrl& address);
    void dropReply();
    void readHead();
    bool followRedirect(int status);
    void respond(int status);
    void pump();
    void conclude();
    void fail(const char* cause);

    NSURLRequest m_request;
    std::shared_ptr<TransferReceiver> m_receiver;
    QNetworkAccessManager& m_manager;
    QUrl m_address;
    QPointer<QNetworkReply> m_reply;
    std::unique_ptr<BodyReader> m_body; ///< since the head was read
    QTimer m_silence;                   ///< runs through until the head has come, then from byte to byte
    QTimer m_whole;
    const char* m_certificateCause = nullptr;
    std::int64_t m_given = 0;
    std::int64_t m_claimedLength = -1; ///< of the body as it is sent
    int m_redirects = 0;
    bool m_isOver = false;
};

} // namespace lamina
