#pragma once

#include <QList>
#include <QNetworkReply>
#include <QSslError>

namespace lamina {

/// The cause of an error of the transport.
const char* networkCause(QNetworkReply::NetworkError error);

/// Whether Qt only calls it an error that the answer's status is 400 or more.
bool isMereStatus(QNetworkReply::NetworkError error);

/// The one cause to be told of all that is wrong with a certificate.
const char* certificateCause(const QList<QSslError>& errors);

} // namespace lamina
