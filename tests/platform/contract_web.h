#pragma once

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <string_view>

#include "platform/WebRequests.h"

namespace ondura {

// One backend's web requests, and servers at port 11900 that they trust.
class TestedWeb {
 public:
  virtual ~TestedWeb() = default;

  virtual WebRequests& web() = 0;

  // The host of the server that was started with these options of notification_server.py.
  virtual std::string HostOf(std::string_view options) = 0;

  // The request that this server got last, as it came.
  virtual std::string NewestPost(std::string_view options) = 0;

  // The number that the system below gives where the port promises `error`.
  [[nodiscard]] virtual std::uint32_t Known(std::uint32_t error) const { return error; }
};

using MakeTestedWeb = std::unique_ptr<TestedWeb> (*)();

// What holds between web requests and a real server.
class WebContract : public testing::TestWithParam<MakeTestedWeb> {
 protected:
  InternetHandle NewRequest(std::string_view host, const WebRequest& request) const {
    const InternetHandle session = web_.Open({"http generic", 0, ""});
    return web_.OpenRequest(web_.Connect(session, host, 11900), request);
  }

  std::unique_ptr<TestedWeb> tested_ = GetParam()();
  WebRequests& web_ = tested_->web();
};

}  // namespace ondura
