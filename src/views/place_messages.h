// SPDX-License-Identifier: MIT
// A remembered place in the code may be gone when the user goes back to it: the test, with the
// message that tells him what to do in the view that he came from.
#pragma once

#include <string_view>

#include "host/places.h"
#include "service/services.h"

namespace oru::views {

/// What brings a view up to date again.
enum class Gone_Hint { Reopen_Form, Update_View, Reopen_Chart };

/// True if the member is still there (`Chk_Prc_Exs`); otherwise the user is told.
[[nodiscard]] bool Chk_Prc_Exs(host::VBE& vbe, service::Services& services, std::string_view module,
                               std::string_view member, Gone_Hint hint);

}  // namespace oru::views
