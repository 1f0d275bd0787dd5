#include "platform/host/services/UnifiedPushRegistration.h"

#include "platform/files/FileReading.h"
#include "platform/files/FileWriting.h"

#include <QString>
#include <QUuid>

#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

using Json = nlohmann::json;

constexpr std::size_t kMostBytes = 4096;
constexpr const char* kDistributor = "distributor";
constexpr const char* kToken = "token";

std::string textOf(const Json& json, const char* key)
{
    return json.is_object() && json.contains(key) && json[key].is_string() ? json[key].get<std::string>()
                                                                           : std::string();
}

std::string textOf(const QUuid& uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toStdString();
}

bool isToken(const std::string& text)
{
    const QUuid uuid(QString::fromStdString(text));
    return !uuid.isNull() && textOf(uuid) == text;
}

std::optional<UnifiedPushRegistration> readFile(const std::string& path)
{
    const auto bytes = readSmallFile(path, kMostBytes);
    if (!bytes)
        return std::nullopt;
    const Json json = Json::parse(bytes->begin(), bytes->end(), nullptr, false);
    UnifiedPushRegistration registration{textOf(json, kDistributor), textOf(json, kToken)};
    const bool isOurs = registration.distributor.starts_with(kDistributorNames) && isToken(registration.token);
    return isOurs ? std::optional(std::move(registration)) : std::nullopt;
}

Outcome writeFile(const std::string& path, const UnifiedPushRegistration& registration)
{
    const std::string text = Json{{kDistributor, registration.distributor}, {kToken, registration.token}}.dump() + "\n";
    return writePrivateFile(path, std::span(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()));
}

} // namespace

UnifiedPushRegistration newRegistration(const std::string& distributor)
{
    return {distributor, textOf(QUuid::createUuid())};
}

std::optional<UnifiedPushRegistration> KeptRegistration::current()
{
    const std::scoped_lock lock(m_mutex);
    if (!std::exchange(m_isRead, true) && !m_folder.empty())
        m_current = readFile(path());
    return m_current;
}

Outcome KeptRegistration::set(const std::optional<UnifiedPushRegistration>& registration)
{
    setForNow(registration);
    if (m_folder.empty())
        return success();
    if (!registration) {
        ::unlink(path().c_str());
        return success();
    }
    const Outcome made = makePrivateFolder(m_folder);
    return made ? writeFile(path(), *registration) : made;
}

void KeptRegistration::setForNow(const std::optional<UnifiedPushRegistration>& registration)
{
    const std::scoped_lock lock(m_mutex);
    m_isRead = true;
    m_current = registration;
}

} // namespace lamina
