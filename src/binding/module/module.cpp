// SPDX-License-Identifier: MIT
// The module's entry, the one symbol that the loadable module exports.

#include "binding/initialise.h"
#include "callback/python.h"

PyMODINIT_FUNC init_Orvanel() {
    binding::initialiseModule();
}
