#include "formula/circles.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace vantora::embedded {

void Circles::Forget() {
  nodes_.clear();
  circles_.clear();
}

std::vector<CellPosition> Circles::Of(const std::vector<CellPosition>& formulas) {
  std::vector<CellPosition> all = formulas;
  std::vector<int> met;
  for (const CellPosition& formula : formulas) {
    if (!nodes_.contains(Key(formula))) Search(formula);
    met.push_back(nodes_.at(Key(formula)).circle);
  }
  std::sort(met.begin(), met.end());
  met.erase(std::unique(met.begin(), met.end()), met.end());
  for (int circle : met) all.insert(all.end(), circles_[circle].begin(), circles_[circle].end());
  const auto order = [&](const CellPosition& position) {
    return std::tuple(model_.PositionOf(position.sheet), position.cell.row, position.cell.column);
  };
  std::sort(all.begin(), all.end(),
            [&](const CellPosition& a, const CellPosition& b) { return order(a) < order(b); });
  all.erase(std::unique(all.begin(), all.end()), all.end());
  return all;
}

void Circles::Search(const CellPosition& start) {
  Enter(start);
  while (!visits_.empty()) {
    Visit& visit = visits_.back();
    if (visit.next == visit.dependents.size()) {
      Leave();
      continue;
    }
    const CellPosition dependent = visit.dependents[visit.next++];
    const auto known = nodes_.find(Key(dependent));
    if (known == nodes_.end()) {
      Enter(dependent);
    } else if (known->second.circle < 0) {
      Node& node = nodes_.at(Key(visit.position));
      node.lowest = std::min(node.lowest, known->second.number);
    }
  }
}

void Circles::Enter(const CellPosition& position) {
  const int number = static_cast<int>(nodes_.size());
  nodes_[Key(position)] = {number, number, -1};
  open_.push_back(position);
  visits_.push_back({position, DependentsOf(position), 0});
}

// A formula that reaches none that was entered before it closes a circle with those entered since.
void Circles::Leave() {
  const CellPosition position = visits_.back().position;
  visits_.pop_back();
  const Node node = nodes_.at(Key(position));
  if (!visits_.empty()) {
    Node& before = nodes_.at(Key(visits_.back().position));
    before.lowest = std::min(before.lowest, node.lowest);
  }
  if (node.lowest != node.number) return;
  std::vector<CellPosition>& circle = circles_.emplace_back();
  do {
    circle.push_back(open_.back());
    open_.pop_back();
    nodes_.at(Key(circle.back())).circle = static_cast<int>(circles_.size()) - 1;
  } while (circle.back() != position);
}

std::vector<CellPosition> Circles::DependentsOf(const CellPosition& position) {
  const CellAddress cell = position.cell;
  const Area* array = invalidation_.ArrayIn(position.sheet, cell);
  const Area area = array ? *array : Area{cell.row, cell.column, cell.row, cell.column};
  std::vector<CellPosition> dependents;
  index_.ForEachDependent(position.sheet, area, [&](auto, const auto& entry, const Area& users) {
    for (int column = users.first_column; column <= users.last_column; ++column) {
      model_.sheets[entry.sheet]->cells.ForEachInColumn(
          column, users.first_row, users.last_row, [&](int row, const Cell& stored) {
            if (stored.formula != entry.formula) return;
            dependents.push_back({entry.sheet, {row, column}});
          });
    }
  });
  return dependents;
}

}  // namespace vantora::embedded
