"""Uses the installed package, with the libraries that lie beside it."""

import tarnex
from tarnex import ivi

with ivi.Supply("", id_query=False, options="Simulate=1") as session, tarnex.Supply("", "Simulate=1") as supply:
    assert supply.identity.model == session.model
    print(session.model)
