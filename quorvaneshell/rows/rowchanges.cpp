#include "rowchanges_p.h"

#include <algorithm>
#include <numeric>

namespace quorvane {

namespace {

// Some views and proxies look at all their rows for each step.
constexpr int mostSteps = 100;

QVector<int> kept(const QVector<int> &numbers)
{
    QVector<int> kept;
    std::copy_if(numbers.cbegin(), numbers.cend(), std::back_inserter(kept),
                 [](int number) { return number >= 0; });
    return kept;
}

// The rows that can stay where they are while the others move: the most that are in order, found as
// the longest increasing subsequence. Sorted.
QVector<int> inOrder(const QVector<int> &numbers)
{
    if (std::is_sorted(numbers.cbegin(), numbers.cend())) // As mostly.
        return numbers;
    QVector<int> ends; // For each length, the place in numbers where the lowest end stands.
    QVector<int> previous(numbers.size(), -1);
    for (int i = 0; i < numbers.size(); ++i) {
        const auto place = std::lower_bound(ends.begin(), ends.end(), numbers.at(i),
                                            [&](int end, int n) { return numbers.at(end) < n; });
        if (place != ends.begin())
            previous[i] = *(place - 1);
        if (place == ends.end())
            ends += i;
        else
            *place = i;
    }
    QVector<int> result(ends.size());
    int at = ends.isEmpty() ? -1 : ends.last();
    for (auto place = result.rbegin(); place != result.rend(); ++place) {
        *place = numbers.at(at);
        at = previous.at(at);
    }
    return result;
}

QVector<RowChange> removals(const QVector<int> &numbers)
{
    QVector<RowChange> changes;
    for (int row = numbers.size() - 1; row >= 0; --row) {
        if (numbers.at(row) >= 0)
            continue;
        if (!changes.isEmpty() && changes.last().first == row + 1) {
            --changes.last().first;
            ++changes.last().count;
        } else {
            changes += { RowChange::Remove, row, 1, 0, {} };
        }
    }
    return changes;
}

QVector<RowChange> insertions(const QVector<int> &sorted, int wanted)
{
    QVector<RowChange> changes;
    auto known = sorted.cbegin();
    for (int number = 0; number < wanted; ++number) {
        if (known != sorted.cend() && *known == number) {
            ++known;
            continue;
        }
        if (changes.isEmpty() || changes.last().numbers.last() != number - 1)
            changes += { RowChange::Insert, number, 0, 0, {} };
        changes.last().numbers += number;
    }
    return changes;
}

// Each row that isn't in its place goes right behind the one that it follows.
QVector<RowChange> moves(QVector<int> rows, const QVector<int> &sorted, const QVector<int> &staying)
{
    QVector<RowChange> changes;
    for (int i = 0; i < sorted.size() && staying.size() < sorted.size(); ++i) {
        const int number = sorted.at(i);
        if (std::binary_search(staying.cbegin(), staying.cend(), number))
            continue;
        const int from = rows.indexOf(number);
        int to = i == 0 ? 0 : rows.indexOf(sorted.at(i - 1)) + 1;
        if (from < to)
            --to;
        if (from == to)
            continue;
        rows.move(from, to);
        changes += { RowChange::Move, from, 1, to, {} };
    }
    return changes;
}

// The rows by their numbers, which then are those of the rows; those that go come last.
RowChange ordering(const QVector<int> &numbers)
{
    RowChange change { RowChange::Order, 0, 0, 0, QVector<int>(numbers.size()) };
    std::iota(change.numbers.begin(), change.numbers.end(), 0);
    std::stable_sort(change.numbers.begin(), change.numbers.end(), [&numbers](int one, int other) {
        return uint(numbers.at(one)) < uint(numbers.at(other));
    });
    return change;
}

QVector<RowChange> atOnce(const QVector<int> &numbers, const QVector<int> &sorted, int wanted)
{
    QVector<RowChange> changes;
    const auto order = [&changes](const QVector<int> &numbers) {
        const RowChange change = ordering(numbers);
        if (!std::is_sorted(change.numbers.cbegin(), change.numbers.cend()))
            changes += change;
    };
    order(numbers);
    const int kept = int(sorted.size());
    if (numbers.size() > kept)
        changes += { RowChange::Remove, kept, int(numbers.size()) - kept, 0, {} };

    QVector<int> all = sorted;
    const QVector<RowChange> pieces = insertions(sorted, wanted);
    for (const RowChange &piece : pieces)
        all += piece.numbers;
    if (!pieces.isEmpty())
        changes += { RowChange::Insert, kept, 0, 0, all.mid(kept) };
    order(all);
    return changes;
}

} // namespace

QVector<RowChange> rowChanges(const QVector<int> &numbers, int wanted)
{
    const QVector<int> rows = kept(numbers);
    QVector<int> sorted = rows;
    std::sort(sorted.begin(), sorted.end());

    const QVector<int> staying = inOrder(rows);
    const QVector<RowChange> first = removals(numbers);
    const QVector<RowChange> last = insertions(sorted, wanted);
    if (first.size() + rows.size() - staying.size() + last.size() > mostSteps)
        return atOnce(numbers, sorted, wanted);
    return first + moves(rows, sorted, staying) + last;
}

} // namespace quorvane
