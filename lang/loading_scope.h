// A table that is loading for as long as the scope lasts, and open to lookups again however it is left.
#pragma once

#include "lang/interlang.h"

namespace owlkit {

class LoadingScope {
  public:
    explicit LoadingScope(interlang& table) : table_(table) { table_.BeginLoad(); }
    ~LoadingScope() { table_.EndLoad(); }
    LoadingScope(const LoadingScope&) = delete;
    LoadingScope& operator=(const LoadingScope&) = delete;

  private:
    interlang& table_;
};

}  // namespace owlkit
