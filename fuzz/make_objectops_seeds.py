#!/usr/bin/env python3
"""Writes the seed inputs of the object-operations fuzz target.

Each seed is a sequence of operations: an opcode (the row of the operation
table in ObjectOps.cpp) and its bytes. Pool indices count the objects made
so far; an index past the pool names the root."""
import pathlib

CREATE, SET, GET, RESET, REPARENT, REORDER, DELETE, ADD_L, REMOVE_L, DROP, DRAWNOW, THEME, COPY, SAVE_LOAD = range(14)
# How SAVE_LOAD saves: to memory, to a file, with a byte changed, cut short;
# HOME puts loaded tops that are no figure under the first object's parent.
MEMORY, FILE, FLIPPED, CUT, HOME = 0, 1, 2, 3, 4
LIGHT, DARK, NO_THEME, WHITE = range(4)
FIG, AXES, LINE, TEXT, PATCH, GROUP, MENU = range(7)
ROOT, EMPTY = 0xC8, 0xFF

def tree():
    # 0 figure, 1 axes, 2 line, 3 text, 4 patch, 5 group, 6 line in group, 7 menu
    return [CREATE, FIG, ROOT, CREATE, AXES, 0, CREATE, LINE, 1, CREATE, TEXT, 1, CREATE, PATCH, 1,
            CREATE, GROUP, 1, CREATE, LINE, 5, CREATE, MENU, 0]

SEEDS = {
    "tree_sets_and_delete": tree() + [
        SET, 2, 3, 7, SET, 2, 9, 17, SET, 1, 5, 20, GET, 1, 4, RESET, 2, REORDER, 1, 0, 0,
        REORDER, 1, 4, 7, DELETE, 1, SET, 2, 3, 7, GET, 6, 1, REPARENT, 2, 1, DRAWNOW],
    "listeners_that_delete_and_raise": tree() + [
        ADD_L, 2, 0, 2, ADD_L, 1, 3, 1, 5, ADD_L, 0, 1, 3, SET, 1, 5, 7, RESET, 0,
        ADD_L, 6, 2, 3, 4, SET, 6, 4, 8, REMOVE_L, 0, DELETE, 0, REMOVE_L, 0],
    "reparent_to_wrong_classes": tree() + [
        REPARENT, 2, ROOT, REPARENT, 1, 2, REPARENT, 0, 1, REPARENT, 5, 6, REPARENT, 5, 5,
        REPARENT, 6, 1, REPARENT, 7, 1, REPARENT, 2, 0xFE, DELETE, 5, REPARENT, 2, 5, REPARENT, 5, 1],
    "unhooked_objects_dropped": tree() + [
        REPARENT, 1, EMPTY, SET, 1, 2, 0xE2, DROP, 1, REPARENT, 0, EMPTY, DROP, 0, CREATE, FIG, ROOT,
        SET, 0, 1, 0xE0, REORDER, ROOT, 1, 0, REORDER, ROOT, 2, 0],
    "copies_of_trees": tree() + [
        SET, 2, 3, 7, COPY, 1, 0, 0, COPY, 0, ROOT, 1, COPY, 2, EMPTY, 0, COPY, 1, 2, 0, COPY, 0, 1, 0,
        ADD_L, 1, 3, 1, 5, COPY, 1, 0, 0, DELETE, 1, COPY, 2, 1, 0, COPY, 5, 5, 0, REPARENT, 7, 2, DRAWNOW],
    "saves_and_loads": tree() + [
        SET, 2, 3, 7, SET, 6, 5, 0xE7, THEME, 0, DARK, SAVE_LOAD, 0, EMPTY, MEMORY, 0,
        SAVE_LOAD, 1, 6, FILE | HOME, 0, SAVE_LOAD, 5, EMPTY, MEMORY | HOME, 0, SAVE_LOAD, 2, 0, MEMORY, 0,
        SAVE_LOAD, 0, EMPTY, FLIPPED, 40, SAVE_LOAD, 0, EMPTY, FLIPPED, 200, SAVE_LOAD, 1, EMPTY, CUT, 128,
        ADD_L, 1, 3, 1, 5, SAVE_LOAD, 1, EMPTY, MEMORY | HOME, 0, DELETE, 2, SAVE_LOAD, 2, 1, MEMORY, 0,
        SAVE_LOAD, ROOT, EMPTY, MEMORY, 0, DELETE, 0, SAVE_LOAD, 8, EMPTY, MEMORY, 0, DRAWNOW],
    "root_deleted": [CREATE, FIG, ROOT, DELETE, ROOT, CREATE, FIG, ROOT, SET, ROOT, 3, 8, RESET, ROOT],
    "theme_changes_with_listeners": tree() + [
        THEME, 0, DARK, SET, 2, 3, 7, THEME, 0, LIGHT, ADD_L, 2, 3, 1, 4, ADD_L, 0, 2, 2, 9, THEME, 0, DARK,
        REPARENT, 6, 1, THEME, 0, WHITE, THEME, 1, DARK, RESET, 2, THEME, 0, NO_THEME, DELETE, 1, THEME, 0, DARK],
}

def main():
    out = pathlib.Path(__file__).parent / "corpus" / "objectops"
    out.mkdir(parents=True, exist_ok=True)
    for name, ops in SEEDS.items():
        (out / name).write_bytes(bytes(ops))

if __name__ == "__main__":
    main()
