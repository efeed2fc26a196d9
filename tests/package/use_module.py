"""Uses the installed module, with the library that lies beside it."""

import tarnex

with tarnex.Supply("", id_query=False, options="Simulate=1") as supply:
    print(supply.model)
