// SPDX-License-Identifier: MIT
// A user who sees nothing and never wants anything to be done.
#pragma once

#include "service/user_interface.h"

namespace oru::fuzz {

class Silent_User final : public service::User_Interface {
 public:
  [[nodiscard]] service::Answer Show_Message(const service::Message& /*message*/) override {
    return service::Answer::No;
  }
};

}  // namespace oru::fuzz
