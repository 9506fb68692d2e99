// Where a step of the setup says what it did and why it failed.
#pragma once

#include <string>

namespace setup {

// Texts are UTF-8, without a line feed at their end.
class Messages {
  public:
    virtual void tell(const std::string& text) = 0;
    virtual void complain(const std::string& text) = 0;  // a failure or a warning

  protected:
    ~Messages() = default;
};

}  // namespace setup
