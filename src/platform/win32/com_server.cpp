// SPDX-License-Identifier: MIT
#include "platform/com_server.h"

#include <string>

#include "platform/result_of.h"
#include "platform/win32/handles.h"

namespace platform {
namespace {

constexpr const wchar_t *kClassesFolder = L"Software\\Classes\\CLSID\\";

std::wstring keyOf(const GUID &clsid) {
    wchar_t text[64];
    StringFromGUID2(clsid, text, static_cast<int>(std::size(text)));
    return std::wstring(kClassesFolder) + text;
}

/// The file of the module that holds this function; empty on failure.
std::wstring ownPath() {
    HMODULE module = nullptr;
    constexpr DWORD kFlags = GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT;
    if (!GetModuleHandleExW(kFlags, reinterpret_cast<const wchar_t *>(&ownPath), &module))
        return {};
    std::wstring path(MAX_PATH, L'\0');
    for (;;) {
        const DWORD length = GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size()));
        if (length < path.size()) {
            path.resize(length);
            return path;
        }
        path.resize(2 * path.size());
    }
}

LSTATUS writeValue(HKEY key, const wchar_t *name, const std::wstring &value) {
    const auto bytes = static_cast<DWORD>((value.size() + 1) * sizeof(wchar_t));
    return RegSetValueExW(key, name, 0, REG_SZ, reinterpret_cast<const BYTE *>(value.c_str()), bytes);
}

LSTATUS writeClass(HKEY root, const std::wstring &keyName, const wchar_t *description, const std::wstring &path) {
    RegistryKey key;
    RegistryKey server;
    LSTATUS status = RegCreateKeyExW(root, keyName.c_str(), 0, nullptr, 0, KEY_WRITE, nullptr, key.put(), nullptr);
    if (status == ERROR_SUCCESS)
        status = writeValue(key.get(), nullptr, description);
    if (status == ERROR_SUCCESS)
        status =
            RegCreateKeyExW(key.get(), L"InprocServer32", 0, nullptr, 0, KEY_WRITE, nullptr, server.put(), nullptr);
    if (status == ERROR_SUCCESS)
        status = writeValue(server.get(), nullptr, path);
    if (status == ERROR_SUCCESS)
        status = writeValue(server.get(), L"ThreadingModel", L"Both");
    return status;
}

} // namespace

HRESULT registerServer(const GUID &clsid, const wchar_t *description) {
    return resultOf([&]() -> HRESULT {
        const std::wstring path = ownPath();
        if (path.empty())
            return HRESULT_FROM_WIN32(GetLastError());
        LSTATUS status = writeClass(HKEY_LOCAL_MACHINE, keyOf(clsid), description, path);
        if (status == ERROR_ACCESS_DENIED)
            status = writeClass(HKEY_CURRENT_USER, keyOf(clsid), description, path);
        return HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
    });
}

HRESULT unregisterServer(const GUID &clsid) {
    return resultOf([&] {
        HRESULT result = S_OK;
        for (HKEY const root : {HKEY_CURRENT_USER, HKEY_LOCAL_MACHINE}) {
            const LSTATUS status = RegDeleteTreeW(root, keyOf(clsid).c_str());
            if (status != ERROR_SUCCESS && status != ERROR_FILE_NOT_FOUND)
                result = HRESULT_FROM_WIN32(static_cast<unsigned long>(status));
        }
        return result;
    });
}

} // namespace platform
