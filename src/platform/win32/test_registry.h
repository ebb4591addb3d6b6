// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "platform/win32/handles.h"

namespace platform {

/// For tests: a HKEY_LOCAL_MACHINE of this process's own while it lives. A key of the user's takes its place, so that
/// no administrator is needed and processes do not see each other's values.
class PrivateLocalMachine {
  public:
    PrivateLocalMachine() {
        create(HKEY_CURRENT_USER, m_path.c_str(), m_machine);
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, m_machine.get());
    }
    ~PrivateLocalMachine() {
        RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
        m_machine.reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, m_path.c_str());
    }
    PrivateLocalMachine(const PrivateLocalMachine &) = delete;
    PrivateLocalMachine &operator=(const PrivateLocalMachine &) = delete;

    /// Makes a key without values.
    bool addKey(const wchar_t *key) const {
        RegistryKey opened;
        return create(HKEY_LOCAL_MACHINE, key, opened);
    }
    /// Sets a value, and makes its key when there is none.
    bool set(const wchar_t *key, const wchar_t *name, DWORD type, const void *data, DWORD size) const {
        RegistryKey opened;
        return create(HKEY_LOCAL_MACHINE, key, opened) &&
               RegSetValueExW(opened.get(), name, 0, type, static_cast<const BYTE *>(data), size) == ERROR_SUCCESS;
    }
    bool set(const wchar_t *key, const wchar_t *name, DWORD value) const {
        return set(key, name, REG_DWORD, &value, sizeof value);
    }
    /// Removes a key with everything in it.
    bool remove(const wchar_t *key) const { return RegDeleteTreeW(HKEY_LOCAL_MACHINE, key) == ERROR_SUCCESS; }

  private:
    static bool create(HKEY root, const wchar_t *path, RegistryKey &key) {
        return RegCreateKeyExW(root, path, 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, key.put(),
                               nullptr) == ERROR_SUCCESS;
    }

    const std::wstring m_path = L"Software\\OrvanelTest" + std::to_wstring(GetCurrentProcessId());
    RegistryKey m_machine;
};

} // namespace platform
