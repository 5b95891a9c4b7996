#pragma once

#include "rowchanges_p.h"

#include <QAbstractListModel>
#include <QPointer>

#include <algorithm>
#include <iterator>
#include <utility>
#include <vector>

namespace quorvane {

// Takes a list model from the rows that it has to those that are wanted, by signals that leave a
// view where it is, and announces countChanged() once, at the end.
//
// A slot on any of these signals may do what it likes: ask for other rows, which are taken up after
// it, or delete the model, but not in a signal that tells what is about to come, since Qt itself
// survives that in none of its models.
//
// The model has this as its friend, and
//     Wanted                         a std::vector of what makes a row
//     _rows                          a std::vector of its rows
//     static _keyOf(row or item)      by which these are known, of a type that has a hash
//     _makeRow(item)                 a row for it; nothing is announced meanwhile
//     _rowsRemoved(rows)             what there is to do with rows that are out of the model
//     _updateRows(wanted, current)   gives the rows, which are the wanted ones now, their values; ends
//                                    when current() is false, which it may be after each emission
template<typename Model>
class RowWalk
{
public:
    using Wanted = typename Model::Wanted;

    explicit RowWalk(Model *model)
        : _model(model)
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
        const QPointer<Model> alive = _model;
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
    void _walk(const Wanted &wanted, const QPointer<Model> &alive)
    {
        const auto isCurrent = [this, &alive] { return alive && !_overtaken; };
        const QVector<RowChange> changes
                = rowChanges(rowNumbers(_keys(_model->_rows), _keys(wanted)), int(wanted.size()));
        for (const RowChange &change : changes) {
            _apply(change, wanted, alive);
            if (!isCurrent())
                return;
        }
        _model->_updateRows(wanted, isCurrent);
        if (!isCurrent() || _count == _model->_rows.size())
            return;
        _count = _model->_rows.size();
        Q_EMIT _model->countChanged();
    }

    template<typename Things>
    static auto _keys(const Things &things)
    {
        QVector<std::decay_t<decltype(Model::_keyOf(things.front()))>> keys;
        keys.reserve(int(things.size()));
        for (const auto &thing : things)
            keys += Model::_keyOf(thing);
        return keys;
    }

    void _apply(const RowChange &change, const Wanted &wanted, const QPointer<Model> &alive)
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

    void _remove(const RowChange &change, const QPointer<Model> &alive)
    {
        auto &rows = _model->_rows;
        const auto first = rows.begin() + change.first;
        const auto end = first + change.count;
        _model->beginRemoveRows({}, change.first, change.first + change.count - 1);
        decltype(_model->_rows) removed(std::make_move_iterator(first),
                                        std::make_move_iterator(end));
        rows.erase(first, end);
        _model->endRemoveRows();
        if (alive)
            _model->_rowsRemoved(std::move(removed));
    }

    void _move(const RowChange &change)
    {
        const int from = change.first;
        const int to = change.to;
        const auto begin = _model->_rows.begin();
        _model->beginMoveRows({}, from, from, {}, to > from ? to + 1 : to);
        if (to > from)
            std::rotate(begin + from, begin + from + 1, begin + to + 1);
        else
            std::rotate(begin + to, begin + from, begin + from + 1);
        _model->endMoveRows();
    }

    void _insert(const RowChange &change, const Wanted &wanted)
    {
        decltype(_model->_rows) fresh;
        for (const int number : change.numbers)
            fresh.push_back(_model->_makeRow(wanted[size_t(number)]));
        _model->beginInsertRows({}, change.first, change.first + int(fresh.size()) - 1);
        _model->_rows.insert(_model->_rows.begin() + change.first,
                             std::make_move_iterator(fresh.begin()),
                             std::make_move_iterator(fresh.end()));
        _model->endInsertRows();
    }

    // A view of QML keeps its place through a change that is called one of the sorting.
    void _order(const RowChange &change, const QPointer<Model> &alive)
    {
        Q_EMIT _model->layoutAboutToBeChanged({}, QAbstractItemModel::VerticalSortHint);
        if (!alive)
            return;
        auto before = std::exchange(_model->_rows, {});
        QVector<int> places(change.numbers.size());
        for (int row = 0; row < change.numbers.size(); ++row) {
            _model->_rows.push_back(std::move(before[size_t(change.numbers.at(row))]));
            places[change.numbers.at(row)] = row;
        }
        const QModelIndexList from = _model->persistentIndexList();
        QModelIndexList to;
        for (const QModelIndex &index : from)
            to += _model->index(places.at(index.row()), index.column());
        _model->changePersistentIndexList(from, to);
        Q_EMIT _model->layoutChanged({}, QAbstractItemModel::VerticalSortHint);
    }

    Model *const _model;
    Wanted _wanted;
    bool _overtaken = false;
    bool _walking = false;
    size_t _count = 0;
};

} // namespace quorvane
