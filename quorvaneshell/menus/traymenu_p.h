#pragma once

#include "menuconnection_p.h"
#include "menuopening_p.h"
#include "menurows_p.h"
#include "traymenu.h"

namespace quorvane {

// One level of a menu.
class TrayMenuPrivate
{
public:
    // The topmost has the id 0 and a connection of its own.
    TrayMenuPrivate(TrayMenu *menu, int id, std::shared_ptr<MenuConnection> connection);

    void updateLoading();

    TrayMenu *const menu;
    const bool isTopmost;
    const std::shared_ptr<MenuConnection> connection;
    MenuOpening opening;
    MenuRows rows;
    bool isLoading = false;

private:
    void _followAsTopmost();
    void _renew();
};

} // namespace quorvane
