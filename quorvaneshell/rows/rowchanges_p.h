#pragma once

#include <QHash>
#include <QVector>

namespace quorvane {

// A step from the rows that a list has to those that are wanted.
struct RowChange
{
    enum Kind {
        Remove, // count rows from first on.
        Move,   // The row first, so that it is number to afterwards.
        Insert, // The wanted rows with these numbers, at first.
        Order   // All rows: row n becomes the one that was number numbers[n].
    };

    Kind kind;
    int first = 0;
    int count = 0;
    int to = 0;
    QVector<int> numbers;
};

// The steps from rows to wanted ones, as few as there can be without changing what stays, so that a
// view keeps its place. Where these would be very many, whose cost for each view grows with their
// square, they are at most four: what stays is ordered, then what goes, goes at once from the end,
// then all that is new comes there and is ordered.
//
// There is a number for each row, which it has among those wanted; -1 for one that goes.
QVector<RowChange> rowChanges(const QVector<int> &numbers, int wanted);

// The numbers for that, from keys of which each occurs once.
template<typename Key>
QVector<int> rowNumbers(const QVector<Key> &rows, const QVector<Key> &wanted)
{
    // Mostly there is a change in one place only.
    const int shorter = qMin(rows.size(), wanted.size());
    int begin = 0;
    while (begin < shorter && rows.at(begin) == wanted.at(begin))
        ++begin;
    int end = 0;
    while (end < shorter - begin
           && rows.at(rows.size() - 1 - end) == wanted.at(wanted.size() - 1 - end))
        ++end;

    QHash<Key, int> known;
    known.reserve(wanted.size() - begin - end);
    for (int i = begin; i < wanted.size() - end; ++i)
        known.insert(wanted.at(i), i);

    QVector<int> numbers(rows.size());
    for (int row = 0; row < rows.size(); ++row) {
        if (row < begin)
            numbers[row] = row;
        else if (row >= rows.size() - end)
            numbers[row] = wanted.size() - rows.size() + row;
        else
            numbers[row] = known.value(rows.at(row), -1);
    }
    return numbers;
}

} // namespace quorvane
