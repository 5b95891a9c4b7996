#pragma once

#include "listmodel.h"
#include "rowchanges_p.h"

#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quorvane {

// Takes a model from the rows that it has to those that are wanted, by signals that leave a
// view where it is, and announces countChanged() once, at the end.
//
// A slot on any of these signals may do what it likes: ask for other rows, which are taken up after
// it, or delete the model, but not in a signal that tells what is about to come, since Qt itself
// survives that in none of its models.
//
// Rows are the model or what has its rows for it. They have this as a friend, and
//     Wanted                         a std::vector of what makes a row
//     _rows                          a std::vector of them
//     static _keyOf(row or item)      by which these are known, of a type that has a hash
//     _makeRow(item)                 a row for it; nothing is announced meanwhile
//     _rowsRemoved(rows)             what there is to do with rows that are out of the model
//     _updateRows(wanted, current)   gives the rows, which are the wanted ones now, their values; ends
//                                    when current() is false, which it may be after each emission
template<typename Rows>
class RowWalk
{
public:
    using Wanted = typename Rows::Wanted;

    RowWalk(ListModel *model, Rows *rows)
        : _model(model)
        , _rows(rows)
    {
    }
    Q_DISABLE_COPY_MOVE(RowWalk)

    // Returns when the rows are the wanted ones or, called in a slot of a walk, at once.
    void show(Wanted wanted)
    {
        _wanted = std::move(wanted);
        _overtaken = true;
        if (_walking)
            return;
        const QPointer<ListModel> alive = _model;
        _walking = true;
        while (_overtaken) {
            _overtaken = false;
            _walk(std::exchange(_wanted, {}), alive);
            if (!alive)
                return;
        }
        _walking = false;
    }

private:
    void _walk(const Wanted &wanted, const QPointer<ListModel> &alive)
    {
        const auto isCurrent = [this, &alive] { return alive && !_overtaken; };
        const QVector<RowChange> changes
                = rowChanges(rowNumbers(_keys(_rows->_rows), _keys(wanted)), int(wanted.size()));
        for (const RowChange &change : changes) {
            _apply(change, wanted, alive);
            if (!isCurrent())
                return;
        }
        _rows->_updateRows(wanted, isCurrent);
        if (!isCurrent() || _count == _rows->_rows.size())
            return;
        _count = _rows->_rows.size();
        Q_EMIT _model->countChanged();
    }

    template<typename Things>
    static auto _keys(const Things &things)
    {
        QVector<std::decay_t<decltype(Rows::_keyOf(things.front()))>> keys;
        keys.reserve(int(things.size()));
        for (const auto &thing : things)
            keys += Rows::_keyOf(thing);
        return keys;
    }

    void _apply(const RowChange &change, const Wanted &wanted, const QPointer<ListModel> &alive)
    {
        if (change.kind == RowChange::Remove)
            _remove(change, alive);
        else if (change.kind == RowChange::Move)
            _move(change);
        else if (change.kind == RowChange::Insert)
            _insert(change, wanted);
        else
            _order(change, alive);
    }

    void _remove(const RowChange &change, const QPointer<ListModel> &alive)
    {
        auto &rows = _rows->_rows;
        const auto first = rows.begin() + change.first;
        const auto end = first + change.count;
        _model->beginRemoveRows({}, change.first, change.first + change.count - 1);
        decltype(_rows->_rows) removed(std::make_move_iterator(first), std::make_move_iterator(end));
        rows.erase(first, end);
        _model->endRemoveRows();
        if (alive)
            _rows->_rowsRemoved(std::move(removed));
    }

    void _move(const RowChange &change)
    {
        const int from = change.first;
        const int to = change.to;
        const auto begin = _rows->_rows.begin();
        _model->beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
        if (to > from)
            std::rotate(begin + from, begin + from + 1, begin + to + 1);
        else
            std::rotate(begin + to, begin + from, begin + from + 1);
        _model->endMoveRows();
    }

    void _insert(const RowChange &change, const Wanted &wanted)
    {
        decltype(_rows->_rows) fresh;
        for (const int number : change.numbers)
            fresh.push_back(_rows->_makeRow(wanted[size_t(number)]));
        _model->beginInsertRows({}, change.first, change.first + int(fresh.size()) - 1);
        _rows->_rows.insert(_rows->_rows.begin() + change.first,
                            std::make_move_iterator(fresh.begin()),
                            std::make_move_iterator(fresh.end()));
        _model->endInsertRows();
    }

    // A view of QML keeps its place through a change that is called one of the sorting.
    void _order(const RowChange &change, const QPointer<ListModel> &alive)
    {
        Q_EMIT _model->layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
        if (!alive)
            return;
        auto before = std::exchange(_rows->_rows, {});
        QVector<int> places(change.numbers.size());
        for (int row = 0; row < change.numbers.size(); ++row) {
            _rows->_rows.push_back(std::move(before[size_t(change.numbers.at(row))]));
            places[change.numbers.at(row)] = row;
        }
        const QModelIndexList from = _model->persistentIndexList();
        QModelIndexList to;
        for (const QModelIndex &index : from)
            to += _model->index(places.at(index.row()), index.column());
        _model->changePersistentIndexList(from, to);
        Q_EMIT _model->layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    }

    ListModel *const _model;
    Rows *const _rows;
    Wanted _wanted;
    bool _overtaken = false;
    bool _walking = false;
    size_t _count = 0;
};

} // namespace quorvane
