# SPDX-License-Identifier: Apache-2.0
"""Record files of many homes, from shards to Parquet to answers, on Apache Spark."""

__version__ = "1.0.0"


class FleetError(Exception):
    """What the user can act on: what, where, and what was expected."""
