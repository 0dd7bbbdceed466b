# SPDX-License-Identifier: Apache-2.0
"""The Spark session of a command."""

import os
import pathlib
import re
import sys

import pyarrow as pa
from pyspark.sql import SparkSession
from pyspark.sql.types import (
    DataType,
    DateType,
    DoubleType,
    IntegerType,
    LongType,
    ShortType,
    StringType,
    StructField,
    StructType,
)

SPARK_TYPES: dict[pa.DataType, DataType] = {
    pa.string(): StringType(),
    pa.int16(): ShortType(),
    pa.int32(): IntegerType(),
    pa.int64(): LongType(),
    pa.float64(): DoubleType(),
    pa.date32(): DateType(),
}
ARROW_TYPES: dict[str, pa.DataType] = {
    **{spark.typeName(): arrow for arrow, spark in SPARK_TYPES.items()},
    "boolean": pa.bool_(),
    "float": pa.float32(),
    "byte": pa.int8(),
    "decimal": pa.float64(),
    "timestamp": pa.timestamp("us"),
}


def session(name: str, master: str, settings: list[str]) -> SparkSession:
    os.environ.setdefault("PYSPARK_PYTHON", sys.executable)
    builder = SparkSession.builder.appName(name).master(master)
    log = pathlib.Path(__file__).with_name("log4j2.properties")
    defaults = {
        "spark.driver.extraJavaOptions": f"-Dlog4j2.configurationFile={log.as_uri()}",
        "spark.ui.showConsoleProgress": "false",
        "spark.sql.shuffle.partitions": "8",
        "spark.sql.session.timeZone": "UTC",
        "spark.speculation": "false",
        "spark.hadoop.mapreduce.fileoutputcommitter.marksuccessfuljobs": "false",
        "spark.sql.parquet.compression.codec": "zstd",
    }
    for key, value in {**defaults, **dict(setting.split("=", 1) for setting in settings)}.items():
        builder = builder.config(key, value)
    return builder.getOrCreate()


def spark_schema(schema: pa.Schema) -> StructType:
    return StructType([StructField(field.name, SPARK_TYPES[field.type]) for field in schema])


def reason_of(error: Exception) -> str:
    """The exception of a task, out of the traces of two languages."""
    text = str(error)
    if found := re.search(
        r"PythonException: Traceback.*?^(\w[^\n]*)\n\n\s+at ", text, re.DOTALL | re.MULTILINE
    ):
        return found[1]
    causes = re.findall(r"^(?:Caused by: |: )(.+)$", text, re.MULTILINE)
    return causes[-1] if causes else text.split("\n")[0]
