#include "platform/view/UIApplication.h"

#include "platform/base/DispatchQueue.h"
#include "platform/base/Log.h"
#include "platform/base/MemoryWarning.h"
#include "platform/base/NotificationCenter.h"

namespace lamina {

UIApplication& UIApplication::shared()
{
    static auto* const application = new UIApplication;
    return *application;
}

bool UIApplication::openURL(const std::string& url)
{
    const bool opened = m_opener && m_opener(url);
    if (!opened)
        logWarning("nothing here opens " + url);
    return opened;
}

void UIApplication::didReceiveMemoryWarning()
{
    DispatchQueue::main().async(
        [] { NotificationCenter::defaultCenter().post(UIApplicationDidReceiveMemoryWarningNotification); });
}

} // namespace lamina
