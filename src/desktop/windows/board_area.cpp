#include "desktop/windows/board_area.hpp"

#include <array>
#include <cmath>
#include <memory>
#include <utility>

#include <gtk/gtk-a11y.h>

#include "desktop/glib/gobject.hpp"

namespace desktop {
namespace {

constexpr const char* areaTypeName = "VambaBoardArea";

struct BoardAction {
  const char* name;    // for programs, in no language
  const char* signal;  // of the area
  const char* keys;
  std::string AccessibleBoard::* localizedName;
};
constexpr std::array actions{BoardAction{"open", "open-asked", "Return", &AccessibleBoard::openAction},
                             BoardAction{"menu", "menu-asked", "Menu", &AccessibleBoard::menuAction}};

/// A row of a board: a label whose place is a part of the board's.
struct RowObject {
  AtkObject object;
  AtkObject* board;  // not owned; null once the row has been removed
  int index;
  render::Rect* share;  // of the board's width, in both directions
};

struct BoardObjectState {
  std::array<std::string, actions.size()> actionNames;  // in the person's language
  std::vector<OwnedObject<AtkObject>> rows;
};

struct BoardObject {
  GtkWidgetAccessible object;
  BoardObjectState* state;
};

GType rowType();
GType boardObjectType();

RowObject* asRow(gpointer object) {
  return reinterpret_cast<RowObject*>(g_type_check_instance_cast(static_cast<GTypeInstance*>(object), rowType()));
}

BoardObject* asBoard(gpointer object) {
  return reinterpret_cast<BoardObject*>(
      g_type_check_instance_cast(static_cast<GTypeInstance*>(object), boardObjectType()));
}

template <typename Class>
Class* parentClassOf(GType type) {
  return static_cast<Class*>(g_type_class_peek(g_type_parent(type)));
}

// Rows.

AtkObject* rowParent(AtkObject* row) noexcept { return asRow(row)->board; }

int rowIndex(AtkObject* row) noexcept { return asRow(row)->index; }

AtkStateSet* rowStates(AtkObject* row) noexcept {
  AtkStateSet* const states = parentClassOf<AtkObjectClass>(rowType())->ref_state_set(row);
  AtkObject* const board = asRow(row)->board;
  if (board == nullptr) {
    atk_state_set_add_state(states, ATK_STATE_DEFUNCT);
    return states;
  }
  // A row is as visible as its board.
  const OwnedObject<AtkStateSet> boards(atk_object_ref_state_set(board));
  for (const auto state : {ATK_STATE_ENABLED, ATK_STATE_SENSITIVE, ATK_STATE_VISIBLE, ATK_STATE_SHOWING}) {
    if (atk_state_set_contains_state(boards.get(), state) != FALSE) atk_state_set_add_state(states, state);
  }
  return states;
}

void rowExtents(AtkComponent* component, int* x, int* y, int* width, int* height, AtkCoordType coordinates) noexcept {
  const auto* const row = asRow(component);
  *x = *y = *width = *height = 0;
  if (row->board == nullptr) return;
  int boardX = 0;
  int boardY = 0;
  int boardWidth = 0;
  int boardHeight = 0;
  const bool within = coordinates == ATK_XY_PARENT;
  atk_component_get_extents(ATK_COMPONENT(row->board), &boardX, &boardY, &boardWidth, &boardHeight,
                            within ? ATK_XY_WINDOW : coordinates);
  const auto scaled = [&](double share) { return static_cast<int>(std::lround(share * boardWidth)); };
  *x = (within ? 0 : boardX) + scaled(row->share->x);
  *y = (within ? 0 : boardY) + scaled(row->share->y);
  *width = scaled(row->share->width);
  *height = scaled(row->share->height);
}

void rowFinalize(GObject* object) noexcept {
  const std::unique_ptr<render::Rect> owned(asRow(object)->share);
  parentClassOf<GObjectClass>(rowType())->finalize(object);
}

void rowClassInit(gpointer rowClass, gpointer /*data*/) noexcept {
  static_cast<GObjectClass*>(rowClass)->finalize = &rowFinalize;
  auto* const accessible = static_cast<AtkObjectClass*>(rowClass);
  accessible->get_parent = &rowParent;
  accessible->get_index_in_parent = &rowIndex;
  accessible->ref_state_set = &rowStates;
}

void rowInit(GTypeInstance* instance, gpointer /*rowClass*/) noexcept {
  auto* const row = reinterpret_cast<RowObject*>(instance);
  row->board = nullptr;
  row->index = -1;
  row->share = std::make_unique<render::Rect>().release();
}

void rowComponentInit(gpointer interface, gpointer /*data*/) noexcept {
  static_cast<AtkComponentIface*>(interface)->get_extents = &rowExtents;
}

GType registerRowType() {
  const GType type = g_type_register_static_simple(ATK_TYPE_OBJECT, "VambaBoardRow", sizeof(AtkObjectClass),
                                                   &rowClassInit, sizeof(RowObject), &rowInit, GTypeFlags{});
  const GInterfaceInfo component{.interface_init = &rowComponentInit, .interface_finalize = {}, .interface_data = {}};
  g_type_add_interface_static(type, ATK_TYPE_COMPONENT, &component);
  return type;
}

GType rowType() {
  static const GType type = registerRowType();
  return type;
}

OwnedObject<AtkObject> newRow(AtkObject* board, int index) {
  OwnedObject<AtkObject> row(ATK_OBJECT(g_object_new(rowType(), nullptr)));
  atk_object_set_role(row.get(), ATK_ROLE_LABEL);
  asRow(row.get())->board = board;
  asRow(row.get())->index = index;
  return row;
}

// The board.

int boardChildCount(AtkObject* board) noexcept { return static_cast<int>(asBoard(board)->state->rows.size()); }

AtkObject* boardChild(AtkObject* board, int index) noexcept {
  const auto& rows = asBoard(board)->state->rows;
  if (index < 0 || static_cast<std::size_t>(index) >= rows.size()) return nullptr;
  AtkObject* const row = rows[static_cast<std::size_t>(index)].get();
  g_object_ref(row);
  return row;
}

void boardFinalize(GObject* object) noexcept {
  const std::unique_ptr<BoardObjectState> state(asBoard(object)->state);
  // A screen reader's bridge may still hold rows.
  for (const auto& row : state->rows) asRow(row.get())->board = nullptr;
  parentClassOf<GObjectClass>(boardObjectType())->finalize(object);
}

const BoardAction* actionAt(int index) {
  return index >= 0 && static_cast<std::size_t>(index) < actions.size() ? &actions[static_cast<std::size_t>(index)]
                                                                        : nullptr;
}

int actionCount(AtkAction* /*board*/) noexcept { return static_cast<int>(actions.size()); }

const char* actionName(AtkAction* /*board*/, int index) noexcept {
  const auto* const action = actionAt(index);
  return action == nullptr ? nullptr : action->name;
}

const char* localizedActionName(AtkAction* board, int index) noexcept {
  if (actionAt(index) == nullptr) return nullptr;
  return asBoard(board)->state->actionNames[static_cast<std::size_t>(index)].c_str();
}

const char* actionKeys(AtkAction* /*board*/, int index) noexcept {
  const auto* const action = actionAt(index);
  return action == nullptr ? nullptr : action->keys;
}

gboolean doAction(AtkAction* board, int index) noexcept {
  const auto* const action = actionAt(index);
  GtkWidget* const area = gtk_accessible_get_widget(GTK_ACCESSIBLE(board));
  if (action == nullptr || area == nullptr) return FALSE;
  // The caller waits for the answer, which must not wait for a menu.
  const auto emit = [](gpointer kept) noexcept -> gboolean {
    const auto& [widget, signal] = *static_cast<std::pair<OwnedObject<GtkWidget>, const char*>*>(kept);
    g_signal_emit_by_name(widget.get(), signal);
    return G_SOURCE_REMOVE;
  };
  const auto drop = [](gpointer kept) noexcept {
    delete static_cast<std::pair<OwnedObject<GtkWidget>, const char*>*>(kept);
  };
  g_object_ref(area);
  auto kept =
      std::make_unique<std::pair<OwnedObject<GtkWidget>, const char*>>(OwnedObject<GtkWidget>(area), action->signal);
  g_idle_add_full(G_PRIORITY_DEFAULT_IDLE, emit, kept.release(), drop);
  return TRUE;
}

void boardClassInit(gpointer boardClass, gpointer /*data*/) noexcept {
  static_cast<GObjectClass*>(boardClass)->finalize = &boardFinalize;
  auto* const accessible = static_cast<AtkObjectClass*>(boardClass);
  accessible->get_n_children = &boardChildCount;
  accessible->ref_child = &boardChild;
}

void boardInit(GTypeInstance* instance, gpointer /*boardClass*/) noexcept {
  reinterpret_cast<BoardObject*>(instance)->state = std::make_unique<BoardObjectState>().release();
}

void boardActionInit(gpointer interface, gpointer /*data*/) noexcept {
  auto* const action = static_cast<AtkActionIface*>(interface);
  action->get_n_actions = &actionCount;
  action->get_name = &actionName;
  action->get_localized_name = &localizedActionName;
  action->get_keybinding = &actionKeys;
  action->do_action = &doAction;
}

GType registerBoardObjectType() {
  const GType type =
      g_type_register_static_simple(GTK_TYPE_WIDGET_ACCESSIBLE, "VambaBoardObject", sizeof(GtkWidgetAccessibleClass),
                                    &boardClassInit, sizeof(BoardObject), &boardInit, GTypeFlags{});
  const GInterfaceInfo action{.interface_init = &boardActionInit, .interface_finalize = {}, .interface_data = {}};
  g_type_add_interface_static(type, ATK_TYPE_ACTION, &action);
  return type;
}

GType boardObjectType() {
  static const GType type = registerBoardObjectType();
  return type;
}

// The widget.

void areaClassInit(gpointer areaClass, gpointer /*data*/) noexcept {
  gtk_widget_class_set_accessible_type(GTK_WIDGET_CLASS(areaClass), boardObjectType());
  gtk_widget_class_set_accessible_role(GTK_WIDGET_CLASS(areaClass), ATK_ROLE_PANEL);
  for (const auto& action : actions) {
    g_signal_new(action.signal, G_TYPE_FROM_CLASS(areaClass), G_SIGNAL_RUN_LAST, 0, nullptr, nullptr, nullptr,
                 G_TYPE_NONE, 0);
  }
}

void areaInit(GTypeInstance* instance, gpointer /*areaClass*/) noexcept {
  auto* const area = GTK_WIDGET(instance);
  gtk_widget_set_has_window(area, FALSE);
  gtk_widget_set_can_focus(area, TRUE);
}

GType areaType() {
  static const GType type =
      g_type_register_static_simple(GTK_TYPE_DRAWING_AREA, areaTypeName, sizeof(GtkDrawingAreaClass), &areaClassInit,
                                    sizeof(GtkDrawingArea), &areaInit, GTypeFlags{});
  return type;
}

void setText(AtkObject* object, const std::string& text, const char* (*current)(AtkObject*),
             void (*set)(AtkObject*, const char*)) {
  const char* const before = current(object);
  if (before == nullptr || text != before) set(object, text.c_str());
}

void removeLastRow(AtkObject* board, std::vector<OwnedObject<AtkObject>>& rows) {
  const OwnedObject<AtkObject> row = std::move(rows.back());
  rows.pop_back();
  g_signal_emit_by_name(board, "children-changed::remove", static_cast<guint>(rows.size()), row.get());
  asRow(row.get())->board = nullptr;
}

}  // namespace

GtkWidget* newBoardArea() { return GTK_WIDGET(g_object_new(areaType(), nullptr)); }

void describeArea(GtkWidget* area, const AccessibleBoard& board) {
  AtkObject* const object = gtk_widget_get_accessible(area);
  setText(object, board.name, &atk_object_get_name, &atk_object_set_name);
  setText(object, board.description, &atk_object_get_description, &atk_object_set_description);
  auto& state = *asBoard(object)->state;
  for (std::size_t i = 0; i < actions.size(); ++i) state.actionNames[i] = board.*(actions[i].localizedName);
  auto& rows = state.rows;
  while (rows.size() > board.rows.size()) removeLastRow(object, rows);
  for (std::size_t i = 0; i < board.rows.size(); ++i) {
    const bool isNew = i == rows.size();
    if (isNew) rows.push_back(newRow(object, static_cast<int>(i)));
    AtkObject* const row = rows[i].get();
    const auto& frame = board.rows[i].frame;
    *asRow(row)->share = {frame.x / board.width, frame.y / board.width, frame.width / board.width,
                          frame.height / board.width};
    setText(row, board.rows[i].text, &atk_object_get_name, &atk_object_set_name);
    if (isNew) g_signal_emit_by_name(object, "children-changed::add", static_cast<guint>(i), row);
  }
}

}  // namespace desktop
