"""The class generator: a `.def` description is parsed into rows
(parse.py), checked (validate.py) and written out through one template per
construct (emit.py, templates.py)."""
