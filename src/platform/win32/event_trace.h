// SPDX-License-Identifier: MIT
#pragma once

#include <mutex>

#include "platform/win_types.h"

#include <evntprov.h>

namespace platform {

/// How a library is reached by name.
struct LibraryLoader {
    HMODULE(WINAPI *load)(LPCSTR name);
    FARPROC(WINAPI *find)(HMODULE library, LPCSTR name);
    BOOL(WINAPI *free)(HMODULE library);
};

/// String events of one provider of Event Tracing for Windows. Its functions are looked up in advapi32 by name, so that
/// nothing fails to load where they are missing. Every operation may be called from any thread.
class EventTrace {
  public:
    /// The provider {9AD3F8FA-B0D3-45A2-8E95-5D1899E0AD05}; its events have level 5 (verbose) and keyword 0.
    static const GUID kProvider;
    static constexpr UCHAR kLevel = 5;
    static constexpr ULONGLONG kKeyword = 0;

    /// The system's loader unless a test brings its own.
    explicit EventTrace(const LibraryLoader &loader = {&LoadLibraryA, &GetProcAddress, &FreeLibrary})
        : m_loader(loader) {}
    EventTrace(const EventTrace &) = delete;
    EventTrace &operator=(const EventTrace &) = delete;

    /// Loads advapi32 and registers the provider, once until closed. False when advapi32 cannot be loaded; a function
    /// that it lacks only makes the calls of it nothing.
    bool open();
    /// Unregisters the provider and frees advapi32.
    void close();
    void write(const wchar_t *line);

  private:
    const LibraryLoader m_loader;
    std::mutex m_mutex; ///< guards what follows
    HMODULE m_library = nullptr;
    decltype(&::EventRegister) m_register = nullptr;
    decltype(&::EventUnregister) m_unregister = nullptr;
    decltype(&::EventWriteString) m_writeString = nullptr;
    REGHANDLE m_registration = 0;
};

} // namespace platform
