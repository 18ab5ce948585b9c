// Present and future values, payments and rates of return. Money paid out is negative; payments
// fall at the end of a period, or at its start when the type argument is not 0.
#include <algorithm>
#include <cmath>
#include <vector>

#include "formula/functions.h"

namespace vantora::embedded {
namespace {

constexpr int kMostSteps = 100;
constexpr double kCloseEnough = 1e-12;

// (1 + rate) ^ periods.
double Growth(double rate, double periods) { return std::pow(1 + rate, periods); }

// What payments of 1 have grown to after the periods.
double AnnuityValue(double rate, double periods, bool at_start) {
  if (rate == 0) return periods;
  return (at_start ? 1 + rate : 1) * (Growth(rate, periods) - 1) / rate;
}

double FutureValue(double rate, double periods, double payment, double present, bool at_start) {
  return -(present * Growth(rate, periods) + payment * AnnuityValue(rate, periods, at_start));
}

double Payment(double rate, double periods, double present, double future, bool at_start) {
  return -(present * Growth(rate, periods) + future) / AnnuityValue(rate, periods, at_start);
}

Operand Pmt(Call& call) {
  const double rate = call.Number(0), periods = call.Number(1), present = call.Number(2);
  const double future = call.Number(3, 0);
  const bool at_start = call.Number(4, 0) != 0;
  if (periods == 0 || rate <= -1) return Scalar::Error(CellError::kNum);
  return Scalar::Number(Payment(rate, periods, present, future, at_start));
}

Operand Fv(Call& call) {
  const double rate = call.Number(0), periods = call.Number(1), payment = call.Number(2);
  const double present = call.Number(3, 0);
  return Scalar::Number(FutureValue(rate, periods, payment, present, call.Number(4, 0) != 0));
}

Operand Pv(Call& call) {
  const double rate = call.Number(0), periods = call.Number(1), payment = call.Number(2);
  const double future = call.Number(3, 0);
  const bool at_start = call.Number(4, 0) != 0;
  return Scalar::Number(-(future + payment * AnnuityValue(rate, periods, at_start)) /
                        Growth(rate, periods));
}

Operand Nper(Call& call) {
  const double rate = call.Number(0), payment = call.Number(1), present = call.Number(2);
  const double future = call.Number(3, 0);
  const bool at_start = call.Number(4, 0) != 0;
  if (rate <= -1) return Scalar::Error(CellError::kNum);
  if (rate == 0) {
    if (payment == 0) return Scalar::Error(CellError::kNum);
    return Scalar::Number(-(present + future) / payment);
  }
  const double per_period = payment * (at_start ? 1 + rate : 1) / rate;
  return Scalar::Number(std::log((per_period - future) / (present + per_period)) /
                        std::log(1 + rate));
}

// The part of a payment that is interest, in a period counted from 1.
double Interest(double rate, double period, double periods, double present, double future,
                bool at_start) {
  const double payment = Payment(rate, periods, present, future, at_start);
  if (at_start && period == 1) return 0;
  const double balance =
      FutureValue(rate, period - (at_start ? 2 : 1), payment, present, at_start) -
      (at_start ? payment : 0);
  return balance * rate;
}

Operand PartOfPayment(Call& call, bool interest) {
  const double rate = call.Number(0), period = call.Number(1), periods = call.Number(2);
  const double present = call.Number(3), future = call.Number(4, 0);
  const bool at_start = call.Number(5, 0) != 0;
  if (period < 1 || period >= periods + 1 || rate <= -1) return Scalar::Error(CellError::kNum);
  const double part = Interest(rate, period, periods, present, future, at_start);
  if (interest) return Scalar::Number(part);
  return Scalar::Number(Payment(rate, periods, present, future, at_start) - part);
}

Operand Ipmt(Call& call) { return PartOfPayment(call, true); }
Operand Ppmt(Call& call) { return PartOfPayment(call, false); }

Operand Npv(Call& call) {
  const double rate = call.Number(0);
  if (rate == -1) return Scalar::Error(CellError::kDiv0);
  double value = 0, discount = 1;
  for (std::size_t i = 1; i < call.size() && !call.failed(); ++i) {
    // Cells count in reading order, those without a number not at all.
    const auto add = [&](double number) {
      discount *= 1 + rate;
      value += number / discount;
    };
    const Operand flows = call.evaluator().ToValues(call[i]);
    if (call[i].IsBlock() && !flows.IsArray() && !flows.scalar.IsError()) {
      if (flows.scalar.IsNumber()) add(flows.scalar.number);
    } else {
      ForEachNumberOf(call, flows, add);
    }
  }
  return Scalar::Number(value);
}

// The root of `value` from `guess` on, by Newton's method with a numerical slope; nullopt when it
// is not found.
template <typename Value>
std::optional<double> FindRate(Value value, double guess) {
  double rate = guess;
  for (int step = 0; step < kMostSteps; ++step) {
    const double here = value(rate);
    const double width = 1e-6 * std::max(1.0, std::fabs(rate));
    const double slope = (value(rate + width) - value(rate - width)) / (2 * width);
    if (!std::isfinite(here) || !std::isfinite(slope) || slope == 0) return std::nullopt;
    double next = rate - here / slope;
    // A rate of -100 % or less is none: go half the way there.
    if (next <= -1) next = (rate - 1) / 2;
    if (std::fabs(next - rate) <= kCloseEnough * std::max(1.0, std::fabs(next))) return next;
    rate = next;
  }
  return std::nullopt;
}

// The numbers of an argument that is cells or an array, in reading order; blanks, texts and
// Booleans are left out. A single value is one number.
std::vector<double> FlowsOf(Call& call, std::size_t i) {
  std::vector<double> numbers;
  const Operand values = call.evaluator().ToValues(call[i]);
  ForEachNumberOf(call, values, [&](double number) { numbers.push_back(number); });
  return numbers;
}

bool HasBothSigns(const std::vector<double>& flows) {
  return std::ranges::any_of(flows, [](double flow) { return flow < 0; }) &&
         std::ranges::any_of(flows, [](double flow) { return flow > 0; });
}

Operand Irr(Call& call) {
  const std::vector<double> flows = FlowsOf(call, 0);
  const double guess = call.Number(1, 0.1);
  if (call.failed()) return {};
  if (!HasBothSigns(flows) || guess <= -1) return Scalar::Error(CellError::kNum);
  const auto present_value = [&](double rate) {
    double value = 0;
    for (std::size_t i = flows.size(); i-- > 0;) value = flows[i] + value / (1 + rate);
    return value;
  };
  const std::optional<double> rate = FindRate(present_value, guess);
  return rate ? Scalar::Number(*rate) : Scalar::Error(CellError::kNum);
}

// The same where blanks count as 0 and a text or a Boolean is an error.
std::vector<double> StrictFlowsOf(Call& call, std::size_t i) {
  std::vector<double> numbers;
  const Operand values = call.evaluator().ToValues(call[i]);
  ForEachValueOf(call, values, [&](const Scalar& value) {
    if (value.IsText() || value.IsBoolean()) call.Fail(CellError::kValue);
    call.FailIfError(value);
    numbers.push_back(value.IsNumber() ? value.number : 0);
  });
  return numbers;
}

// Payments at any dates. The first date is where time starts; none may lie before it.
struct DatedFlows {
  std::vector<double> amounts;
  std::vector<double> years;  // of 365 days, from the first date on

  // The call fails when the arguments are none.
  DatedFlows(Call& call, std::vector<double> flows, const std::vector<double>& dates)
      : amounts(std::move(flows)) {
    if (amounts.empty() || amounts.size() != dates.size()) call.Fail(CellError::kNum);
    for (std::size_t i = 0; i < dates.size() && !call.failed(); ++i) {
      const double days = std::trunc(dates[i]) - std::trunc(dates[0]);
      if (days < 0 || dates[0] < 0) call.Fail(CellError::kNum);
      years.push_back(days / 365);
    }
  }

  double ValueAt(double rate) const {
    double value = 0;
    for (std::size_t i = 0; i < amounts.size(); ++i) {
      value += amounts[i] / std::pow(1 + rate, years[i]);
    }
    return value;
  }
  // What the value at that rate consists of, receipts and payments added up.
  double TurnoverAt(double rate) const {
    double turnover = 0;
    for (std::size_t i = 0; i < amounts.size(); ++i) {
      turnover += std::fabs(amounts[i]) / std::pow(1 + rate, years[i]);
    }
    return turnover;
  }
};

constexpr double kUsualGuess = 0.1;

// The rate as Excel comes to it from the usual guess, and no more exactly; nothing where its way
// finds none. It halves a range whose ends give values of different signs: from 0 to the guess
// doubled as often as it takes or, when only negative rates give the other sign, below 0. That it
// is content with a hundred-millionth of the range and of the turnover gives the rates that Excel
// stored, though it may go a step further or less for others.
std::optional<double> RateByHalving(const DatedFlows& flows) {
  constexpr int kFewestHalvings = 27;  // the first to leave less than that of the range
  constexpr int kMostHalvings = 100;
  constexpr double kHighestRate = 1e9;
  const bool positive_at_zero = flows.ValueAt(0) > 0;
  const auto differs = [&](double rate) { return (flows.ValueAt(rate) > 0) != positive_at_zero; };
  double low = 0, high = kUsualGuess;
  while (high < kHighestRate && !differs(high)) high *= 2;
  if (high >= kHighestRate) {
    low = -kUsualGuess;
    high = 0;
    if (!differs(low)) {
      low = -1;
      high = -kUsualGuess;
    }
  }
  const bool positive_at_high = flows.ValueAt(high) > 0;
  for (int halvings = 1; halvings <= kMostHalvings; ++halvings) {
    const double rate = (low + high) / 2;
    const double value = flows.ValueAt(rate);
    const bool is_close = std::fabs(value) < 1e-8 * flows.TurnoverAt(rate);
    if (halvings >= kFewestHalvings && is_close) return rate;
    ((value > 0) == positive_at_high ? high : low) = rate;
  }
  return std::nullopt;
}

// The host takes no rate of 0 or less here.
Operand Xnpv(Call& call) {
  const double rate = call.Number(0);
  const DatedFlows flows(call, FlowsOf(call, 1), FlowsOf(call, 2));
  if (call.failed()) return {};
  if (rate <= 0) return Scalar::Error(CellError::kNum);
  return Scalar::Number(flows.ValueAt(rate));
}

Operand Xirr(Call& call) {
  const double guess = call.Number(2, kUsualGuess);
  const DatedFlows flows(call, StrictFlowsOf(call, 0), StrictFlowsOf(call, 1));
  if (call.failed()) return {};
  if (!HasBothSigns(flows.amounts) || guess <= -1) return Scalar::Error(CellError::kNum);
  std::optional<double> rate;
  if (guess == kUsualGuess) rate = RateByHalving(flows);
  if (!rate) rate = FindRate([&](double at) { return flows.ValueAt(at); }, guess);
  return rate ? Scalar::Number(*rate) : Scalar::Error(CellError::kNum);
}

// Payments are financed at one rate, receipts reinvested at another.
Operand Mirr(Call& call) {
  const std::vector<double> flows = FlowsOf(call, 0);
  const double finance_rate = call.Number(1), reinvest_rate = call.Number(2);
  if (call.failed()) return {};
  double paid = 0, received = 0;
  for (std::size_t i = 0; i < flows.size(); ++i) {
    if (flows[i] < 0) paid += flows[i] / Growth(finance_rate, static_cast<double>(i));
    if (flows[i] > 0) {
      received += flows[i] * Growth(reinvest_rate, static_cast<double>(flows.size() - 1 - i));
    }
  }
  if (paid == 0 || received == 0) return Scalar::Error(CellError::kDiv0);
  const double periods = static_cast<double>(flows.size()) - 1;
  return Scalar::Number(std::pow(-received / paid, 1 / periods) - 1);
}

Operand Rate(Call& call) {
  const double periods = call.Number(0), payment = call.Number(1), present = call.Number(2);
  const double future = call.Number(3, 0), guess = call.Number(5, 0.1);
  const bool at_start = call.Number(4, 0) != 0;
  if (call.failed()) return {};
  if (periods <= 0 || guess <= -1) return Scalar::Error(CellError::kNum);
  const auto balance = [&](double rate) {
    // Close to 0 the annuity's quotient would lose its digits.
    if (std::fabs(rate) < 1e-9) rate = 0;
    return FutureValue(rate, periods, payment, present, at_start) - future;
  };
  const std::optional<double> rate = FindRate(balance, guess);
  return rate ? Scalar::Number(*rate) : Scalar::Error(CellError::kNum);
}

constexpr FunctionEntry kFunctions[] = {
    {"FV", 3, 5, "v", Fv},       {"IPMT", 4, 6, "v", Ipmt},   {"IRR", 1, 2, "rv", Irr},
    {"MIRR", 3, 3, "rvv", Mirr}, {"NPER", 3, 5, "v", Nper},   {"NPV", 2, kAnyCount, "v*r", Npv},
    {"PMT", 3, 5, "v", Pmt},     {"PPMT", 4, 6, "v", Ppmt},   {"PV", 3, 5, "v", Pv},
    {"RATE", 3, 6, "v", Rate},   {"XIRR", 2, 3, "rrv", Xirr}, {"XNPV", 3, 3, "vrr", Xnpv},
};

}  // namespace

std::span<const FunctionEntry> FinanceFunctions() { return kFunctions; }

}  // namespace vantora::embedded
