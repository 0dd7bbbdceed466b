# SPDX-License-Identifier: Apache-2.0
"""`python -m algdata_fleet` is the command algdata-fleet."""

import sys

from algdata_fleet.cli import main

sys.exit(main())
