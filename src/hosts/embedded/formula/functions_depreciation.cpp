// Depreciation, and payments and rates of periods summed up.
#include <algorithm>
#include <cmath>

#include "formula/functions.h"

namespace vantora::embedded {
namespace {

Operand NumError() { return Scalar::Error(CellError::kNum); }

Operand StraightLine(Call& call) {
  const double cost = call.Number(0), salvage = call.Number(1), life = call.Number(2);
  if (life == 0) return Scalar::Error(CellError::kDiv0);
  return Scalar::Number((cost - salvage) / life);
}

// By the sum of the years' digits.
Operand SumOfYears(Call& call) {
  const double cost = call.Number(0), salvage = call.Number(1), life = call.Number(2);
  const double period = call.Number(3);
  if (salvage < 0 || life < 1 || period < 1 || period > life) return NumError();
  return Scalar::Number((cost - salvage) * (life - period + 1) * 2 / (life * (life + 1)));
}

// At a fixed rate, which is rounded to three digits; the first year has `months` months.
Operand FixedDeclining(Call& call) {
  const double cost = call.Number(0), salvage = call.Number(1), life = call.Number(2);
  const double period = std::trunc(call.Number(3)), months = std::trunc(call.Number(4, 12));
  if (call.failed()) return {};
  if (cost < 0 || salvage < 0 || life <= 0 || period < 1 || months < 1 || months > 12 ||
      period > (months < 12 ? life + 1 : life)) {
    return NumError();
  }
  if (cost == 0) return Scalar::Number(0);
  const double rate = std::round((1 - std::pow(salvage / cost, 1 / life)) * 1000) / 1000;
  double written_off = 0, amount = cost * rate * months / 12;
  for (double i = 1; i < period; ++i) {
    written_off += amount;
    amount = (cost - written_off) * rate;
  }
  // The year after the last takes what the first one's months leave.
  if (period > life && period > 1) amount *= (12 - months) / 12;
  return Scalar::Number(amount);
}

// What a declining balance has left after the periods, before the salvage value stops it.
double BalanceAfter(double cost, double rate, double periods) {
  if (rate >= 1) return periods > 0 ? 0 : cost;
  return cost * std::pow(1 - rate, periods);
}

double DecliningAmount(double cost, double salvage, double rate, double period) {
  const double before = BalanceAfter(cost, rate, period - 1);
  const double after = std::max(BalanceAfter(cost, rate, period), salvage);
  return std::max(before - after, 0.0);
}

Operand DoubleDeclining(Call& call) {
  const double cost = call.Number(0), salvage = call.Number(1), life = call.Number(2);
  const double period = call.Number(3), factor = call.Number(4, 2);
  if (cost < 0 || salvage < 0 || life <= 0 || period <= 0 || factor <= 0 || period > life) {
    return NumError();
  }
  return Scalar::Number(DecliningAmount(cost, salvage, factor / life, period));
}

// The amount between two times: each whole period's amount counts by its share that lies between
// them. Unless `stays_declining`, the straight line over the rest of the life takes over once it
// gives more.
Operand VariableDeclining(Call& call) {
  const double cost = call.Number(0), salvage = call.Number(1), life = call.Number(2);
  const double start = call.Number(3), end = call.Number(4);
  const double factor = call.Given(5) ? call.Number(5) : 2;
  const bool stays_declining = call.Boolean(6, false);
  if (call.failed()) return {};
  constexpr double kMostPeriods = 1e6;
  if (cost < 0 || salvage < 0 || life <= 0 || start < 0 || end < start || end > life ||
      factor < 0 || end > kMostPeriods) {
    return NumError();
  }
  double total = 0, balance = cost;
  for (double period = 1; period - 1 < end; ++period) {
    double amount = DecliningAmount(cost, salvage, factor / life, period);
    if (!stays_declining) {
      const double left = std::max(life - (period - 1), 1.0);
      amount = std::min(balance * factor / life, std::max(balance - salvage, 0.0));
      amount = std::max(amount, std::max(balance - salvage, 0.0) / left);
      balance -= amount;
    }
    const double share = std::min(end, period) - std::max(start, period - 1);
    if (share > 0) total += amount * share;
  }
  return Scalar::Number(total);
}

// --- Payments of several periods ---

Operand CumulatedPart(Call& call, bool interest) {
  const double rate = call.Number(0), periods = call.Number(1), present = call.Number(2);
  const double first = std::ceil(call.Number(3)), last = std::trunc(call.Number(4));
  const double type = call.Number(5);
  if (call.failed()) return {};
  if (rate <= 0 || periods <= 0 || present <= 0 || first < 1 || last < first || last > periods ||
      (type != 0 && type != 1)) {
    return NumError();
  }
  // (1 + rate) ^ n - 1, exact for small rates as well.
  const auto growth = [&](double n) { return std::expm1(n * std::log1p(rate)); };
  // Payments at the start of the periods are smaller by one period's interest.
  const double earlier = type == 1 ? 1 + rate : 1;
  const double first_principal = -present * rate / growth(periods);
  const double payment = (first_principal - present * rate) / earlier;
  // The principal grows by the rate from one payment to the next, except that a payment made at
  // once bears no interest.
  const bool at_once = type == 1 && first == 1;
  const double from = at_once ? 2 : first;
  double principal = at_once ? payment : 0;
  if (last >= from) {
    principal +=
        first_principal / earlier * (growth(from - 1) + 1) * growth(last - from + 1) / rate;
  }
  return Scalar::Number(interest ? payment * (last - first + 1) - principal : principal);
}
Operand CumulatedInterest(Call& call) { return CumulatedPart(call, true); }
Operand CumulatedPrincipal(Call& call) { return CumulatedPart(call, false); }

Operand EffectiveRate(Call& call) {
  const double nominal = call.Number(0), periods = std::trunc(call.Number(1));
  if (nominal <= 0 || periods < 1) return NumError();
  return Scalar::Number(std::pow(1 + nominal / periods, periods) - 1);
}

Operand NominalRate(Call& call) {
  const double effective = call.Number(0), periods = std::trunc(call.Number(1));
  if (effective <= 0 || periods < 1) return NumError();
  return Scalar::Number((std::pow(effective + 1, 1 / periods) - 1) * periods);
}

constexpr FunctionEntry kFunctions[] = {
    {"CUMIPMT", 6, 6, "v", CumulatedInterest}, {"CUMPRINC", 6, 6, "v", CumulatedPrincipal},
    {"DB", 4, 5, "v", FixedDeclining},         {"DDB", 4, 5, "v", DoubleDeclining},
    {"EFFECT", 2, 2, "v", EffectiveRate},      {"NOMINAL", 2, 2, "v", NominalRate},
    {"SLN", 3, 3, "v", StraightLine},          {"SYD", 4, 4, "v", SumOfYears},
    {"VDB", 5, 7, "v", VariableDeclining},
};

}  // namespace

std::span<const FunctionEntry> DepreciationFunctions() { return kFunctions; }

}  // namespace vantora::embedded
