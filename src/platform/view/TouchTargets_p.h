#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/view/UIView.h"

#include <memory>
#include <vector>

namespace lamina {

/// Whether the view, or one above it, is a control.
bool standsInControl(const UIView& view);

/// The views whose recognisers are offered what begins on `hit`, the nearest first: `hit` and those above it up to
/// `root`. Where none of them has a recogniser that is on, nor is a control, the view that takes what is left over
/// follows.
std::vector<std::shared_ptr<UIView>> touchTargets(UIView& hit, UIView& root);

/// The same for what begins at a point of the root; none where nothing is hit.
std::vector<std::shared_ptr<UIView>> touchTargetsAt(CGPoint point, UIView& root);

} // namespace lamina
