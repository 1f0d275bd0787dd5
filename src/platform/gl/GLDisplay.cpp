#include "platform/gl/GLDisplay.h"

#include <EGL/egl.h>
#include <EGL/eglext.h>
#include <algorithm>
#include <array>
#include <charconv>
#include <cstddef>
#include <cstdlib>
#include <latch>
#include <optional>
#include <thread>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr EGLint kMostDevices = 32;
constexpr const char* kSubject = "OpenGL ES";

template <class Function>
Function eglFunction(const char* name)
{
    return reinterpret_cast<Function>(eglGetProcAddress(name));
}

/// Whether the system has so many threads to give, all at once.
bool givesThreads(unsigned count)
{
    std::latch end(1);
    std::vector<std::thread> threads;
    threads.reserve(count);
    bool isGiven = true;
    try {
        while (threads.size() < count)
            threads.emplace_back([&end] { end.wait(); });
    } catch (...) { // no thread, or no memory for one
        isGiven = false;
    }
    end.count_down();
    for (std::thread& thread : threads)
        thread.join();
    return isGiven;
}

/// The software driver starts a thread a processor, and waits forever for one that it didn't get; without any it draws
/// by itself.
void spareDriverThreads()
{
    if (!givesThreads(std::max(1U, std::thread::hardware_concurrency())))
        ::setenv("LP_NUM_THREADS", "0", 1);
}

/// Extension lists are words with blanks between; one may begin another's name.
bool lists(const char* extensions, std::string_view wanted)
{
    std::string_view rest = extensions ? extensions : "";
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(' '), rest.size());
        if (rest.substr(0, end) == wanted)
            return true;
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return false;
}

std::string named(const GLDevice& device)
{
    const std::string kind = device.software ? "software" : "hardware";
    return std::to_string(device.index) + " (" + kind + (device.drmFile.empty() ? "" : ", " + device.drmFile) + ")";
}

} // namespace

Result<std::vector<GLDevice>> devicesInOrder(const std::vector<GLDevice>& all, std::string_view wanted)
{
    std::vector<GLDevice> chosen = all;
    std::stable_partition(chosen.begin(), chosen.end(), [](const GLDevice& device) { return !device.software; });
    if (wanted.empty())
        return chosen;
    int index = -1;
    const auto number = std::from_chars(wanted.data(), wanted.data() + wanted.size(), index);
    const bool isNumber = number.ec == std::errc() && number.ptr == wanted.data() + wanted.size();
    std::erase_if(chosen, [&](const GLDevice& device) {
        if (wanted == "software" || wanted == "hardware")
            return device.software != (wanted == "software");
        return isNumber ? device.index != index : device.drmFile != wanted;
    });
    if (!chosen.empty())
        return chosen;
    std::string there;
    for (const GLDevice& device : all)
        there += (there.empty() ? "" : ", ") + named(device);
    return Error{"LAMINA_EGL_DEVICE",
                 "no graphics device '" + std::string(wanted) + "'; there is " + (there.empty() ? "none" : there)};
}

/// The steps from nothing to a display that can make contexts.
struct GLDisplayOpening {
    struct Platform {
        EGLenum platform;
        void* native;
        GLDevice device;
    };

    static std::vector<EGLDeviceEXT> eglDevices()
    {
        if (!lists(eglQueryString(EGL_NO_DISPLAY, EGL_EXTENSIONS), "EGL_EXT_platform_device"))
            return {};
        const auto query = eglFunction<PFNEGLQUERYDEVICESEXTPROC>("eglQueryDevicesEXT");
        std::array<EGLDeviceEXT, kMostDevices> found{};
        EGLint count = 0;
        if (!query || !query(kMostDevices, found.data(), &count))
            return {};
        return std::vector<EGLDeviceEXT>(found.begin(), found.begin() + count); // no list of two pointers
    }

    static GLDevice described(EGLDeviceEXT device, int index)
    {
        const auto query = eglFunction<PFNEGLQUERYDEVICESTRINGEXTPROC>("eglQueryDeviceStringEXT");
        GLDevice result{index};
        if (!query)
            return result;
        const char* extensions = query(device, EGL_EXTENSIONS);
        result.software = lists(extensions, "EGL_MESA_device_software");
        if (lists(extensions, "EGL_EXT_device_drm")) {
            const char* file = query(device, EGL_DRM_DEVICE_FILE_EXT);
            result.drmFile = file ? file : "";
        }
        return result;
    }

    /// What to try, best first.
    static Result<std::vector<Platform>> platforms()
    {
        const char* wish = std::getenv("LAMINA_EGL_DEVICE");
        const std::vector<EGLDeviceEXT> handles = eglDevices();
        std::vector<GLDevice> devices;
        for (std::size_t i = 0; i < handles.size(); ++i)
            devices.push_back(described(handles[i], static_cast<int>(i)));
        Result<std::vector<GLDevice>> order = devicesInOrder(devices, wish ? wish : "");
        if (!order)
            return order.error();
        std::vector<Platform> platforms;
        for (GLDevice& device : *order) {
            EGLDeviceEXT handle = handles[static_cast<std::size_t>(device.index)];
            platforms.push_back({EGL_PLATFORM_DEVICE_EXT, handle, std::move(device)});
        }
        if (devices.empty()) // a driver that can't list its devices
            platforms.push_back({EGL_PLATFORM_SURFACELESS_MESA, nullptr, {}});
        return platforms;
    }

    static EGLDisplay displayOf(const Platform& platform)
    {
        const auto get = eglFunction<PFNEGLGETPLATFORMDISPLAYEXTPROC>("eglGetPlatformDisplayEXT");
        EGLDisplay display = get ? get(platform.platform, platform.native, nullptr) : EGL_NO_DISPLAY;
        if (display == EGL_NO_DISPLAY && platform.platform == EGL_PLATFORM_SURFACELESS_MESA)
            display = eglGetDisplay(EGL_DEFAULT_DISPLAY);
        return display;
    }

    static bool makesContexts(EGLDisplay display, EGLConfig config)
    {
        const std::array<EGLint, 3> attributes{EGL_CONTEXT_CLIENT_VERSION, 2, EGL_NONE};
        EGLContext context = eglCreateContext(display, config, EGL_NO_CONTEXT, attributes.data());
        if (context == EGL_NO_CONTEXT)
            return false;
        eglDestroyContext(display, context);
        return true;
    }

    static std::optional<GLDisplay> open(const Platform& platform)
    {
        spareDriverThreads();
        EGLDisplay display = displayOf(platform);
        if (display == EGL_NO_DISPLAY || !eglInitialize(display, nullptr, nullptr))
            return std::nullopt;
        eglBindAPI(EGL_OPENGL_ES_API);
        const bool surfaceless = lists(eglQueryString(display, EGL_EXTENSIONS), "EGL_KHR_surfaceless_context");
        const std::array<EGLint, 13> wanted{EGL_RENDERABLE_TYPE,
                                            EGL_OPENGL_ES2_BIT,
                                            EGL_SURFACE_TYPE,
                                            surfaceless ? 0 : EGL_PBUFFER_BIT,
                                            EGL_RED_SIZE,
                                            8,
                                            EGL_GREEN_SIZE,
                                            8,
                                            EGL_BLUE_SIZE,
                                            8,
                                            EGL_ALPHA_SIZE,
                                            8,
                                            EGL_NONE};
        EGLConfig config = nullptr;
        EGLint count = 0;
        if (!eglChooseConfig(display, wanted.data(), &config, 1, &count) || count < 1 ||
            !makesContexts(display, config)) {
            eglTerminate(display);
            return std::nullopt;
        }
        GLDisplay opened;
        opened.m_display = display;
        opened.m_config = config;
        opened.m_surfaceless = surfaceless;
        opened.m_device = platform.device;
        return opened;
    }

    static Result<GLDisplay> first()
    {
        Result<std::vector<Platform>> candidates = platforms();
        if (!candidates)
            return candidates.error();
        for (const Platform& platform : *candidates) {
            if (std::optional<GLDisplay> opened = open(platform))
                return std::move(*opened);
        }
        return Error{kSubject,
                     "no graphics driver offers OpenGL ES 2.0 here; Mesa's libgl1-mesa-dri draws without hardware"};
    }
};

const Result<GLDisplay>& GLDisplay::shared()
{
    static const Result<GLDisplay>& display = *new Result<GLDisplay>(GLDisplayOpening::first());
    return display;
}

} // namespace lamina
