"""Lets ParaView 5.11 load Python plugins with Python 3.11, which has no inspect.getargspec.

Python imports this file at its start, before ParaView looks for that function, if its folder is in PYTHONPATH.
"""

import inspect

if not hasattr(inspect, "getargspec"):
    inspect.getargspec = inspect.getfullargspec
