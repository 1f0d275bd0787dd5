#include "export/ShareSheet.h"

#include "platform/base/DispatchQueue.h"
#include "platform/view/UIActivityViewController.h"

namespace lamina {

namespace {

using Sheet = std::shared_ptr<UIActivityViewController>;

Sheet presented(Sheet sheet, UIViewController& screen)
{
    DispatchQueue::main().async([sheet, weak = screen.weak_from_this()] {
        if (const std::shared_ptr<UIViewController> presenter = weak.lock())
            presenter->present(sheet, true);
    });
    return sheet;
}

} // namespace

Sheet presentShareSheet(const std::string& path, UIViewController& screen)
{
    return presented(std::make_shared<UIActivityViewController>(path), screen);
}

Sheet presentShareSheet(const UIImage& image, UIViewController& screen)
{
    return presented(std::make_shared<UIActivityViewController>(image), screen);
}

} // namespace lamina
