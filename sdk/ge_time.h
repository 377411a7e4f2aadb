// Time as a fraction of seconds.
#pragma once

#include "ge_types.h"

#include <cmath>

class BaseTime {
public:
  BaseTime() {}
  explicit BaseTime(Real seconds) : numerator_(seconds) {}
  explicit BaseTime(Real numerator, Real denominator) : numerator_(numerator), denominator_(denominator) {}

  Real Get() const { return denominator_ == 0.0 ? 0.0 : numerator_ / denominator_; }
  Real GetNumerator() const { return numerator_; }
  Real GetDenominator() const { return denominator_; }
  void SetNumerator(Real n) { numerator_ = n; }
  void SetDenominator(Real d) { denominator_ = d; }
  LONG GetFrame(Real fps) const {
    return (LONG)FCut(std::floor(Get() * fps + 1e-9), (Real)MINLONGl, (Real)MAXLONGl);
  }

  friend BaseTime operator+(const BaseTime& a, const BaseTime& b) {
    return a.denominator_ == b.denominator_ ? BaseTime(a.numerator_ + b.numerator_, a.denominator_)
                                            : BaseTime(a.Get() + b.Get());
  }
  friend BaseTime operator-(const BaseTime& a, const BaseTime& b) {
    return a + BaseTime(-b.numerator_, b.denominator_);
  }
  friend bool operator==(const BaseTime& a, const BaseTime& b) { return a.Get() == b.Get(); }
  friend bool operator!=(const BaseTime& a, const BaseTime& b) { return !(a == b); }
  friend bool operator<(const BaseTime& a, const BaseTime& b) { return a.Get() < b.Get(); }
  friend bool operator>(const BaseTime& a, const BaseTime& b) { return b < a; }

private:
  Real numerator_ = 0.0, denominator_ = 1.0;
};
