#include "platform/application/FIRMessaging.h"

namespace lamina {

void FIRApp::configure()
{
    if (MessagingService* const service = FIRMessaging::messaging().service())
        service->configure();
}

FIRMessaging& FIRMessaging::messaging()
{
    static auto* const client = new FIRMessaging;
    return *client;
}

void FIRMessaging::setAPNSToken(const std::vector<std::uint8_t>& token)
{
    if (m_service)
        m_service->setAPNSToken(token);
}

void FIRMessaging::didReceiveRegistrationToken(const std::string& token)
{
    if (const auto delegate = m_delegate.lock())
        delegate->messaging(*this, token);
}

} // namespace lamina
