// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

class GraphModel;
class QMenu;
class QWidget;

/// The popup menu that the model's CustomMenu describes, hidden entries left out; null when nothing is left. It raises
/// the model's CustomMenuClicked from the event loop, when it has closed, and deletes itself; it has no event loop of
/// its own, so that nothing waits on the stack whatever a handler does. The model must outlive it.
QMenu* makeGraphMenu(GraphModel& model, QWidget* parent);
