#pragma once

#include <QGuiApplication>

#include <string>

namespace lamina {

/// An application in which an exception ends what a person was about, and nothing else: it is logged, and an alert over
/// the screen on top names the cause; while that stands there further ones are only logged. Those of queues' blocks are
/// told in the same way. One a process, around the `Application`. Main thread.
class GuardedApplication : public QGuiApplication {
public:
    GuardedApplication(int& argc, char** argv);
    ~GuardedApplication() override;

    bool notify(QObject* receiver, QEvent* event) override;
};

} // namespace lamina
