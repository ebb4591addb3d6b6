// SPDX-License-Identifier: MIT
#pragma once

namespace platform {

/// For a scope, one of the calling thread's uses of operator new fails: the one before which `granted` succeeded. A
/// program that uses this links orvanel_failing_new, which brings the operators.
class FailingNew {
  public:
    explicit FailingNew(int granted);
    ~FailingNew();
    FailingNew(const FailingNew &) = delete;
    FailingNew &operator=(const FailingNew &) = delete;

    /// Whether the scope came as far as the failure.
    bool hasFailed() const;
};

} // namespace platform
