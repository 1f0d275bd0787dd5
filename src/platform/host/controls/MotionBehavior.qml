import QtQuick

// Takes a number where its controller has put it, in the time and on the curve that the controller's animation says:
//     y: controller.strip.value
//     MotionBehavior on y { motion: controller.strip }
Behavior {
    id: behavior

    // An AnimatedProperty.
    required property var motion

    enabled: motion.delay + motion.duration > 0
    SequentialAnimation {
        PauseAnimation { duration: behavior.motion.delay }
        NumberAnimation {
            duration: behavior.motion.duration
            easing: behavior.motion.easing
        }
    }
}
