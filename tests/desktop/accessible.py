#!/usr/bin/python3
"""What assistive technology reads of Brindle: a JSON list of [role, name, states], each parent before its children."""
import json

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi  # noqa: E402


def describe(thing):
    states = [state.value_nick for state in thing.get_state_set().get_states()]
    yield [thing.get_role_name(), thing.get_name(), states]
    for index in range(thing.get_child_count()):
        child = thing.get_child_at_index(index)
        if child:
            yield from describe(child)


applications = (Atspi.get_desktop(0).get_child_at_index(i) for i in range(Atspi.get_desktop(0).get_child_count()))
print(json.dumps([line for application in applications if "rindle" in application.get_name()
                  for line in describe(application)]))
