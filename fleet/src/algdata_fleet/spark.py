# SPDX-License-Identifier: Apache-2.0
"""The Spark session of a command."""

import os
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


def session(name: str, master: str | None, settings: list[str]) -> SparkSession:
    """With a master, or the one of spark-submit and spark-defaults.conf, or this machine."""
    os.environ.setdefault("PYSPARK_PYTHON", sys.executable)
    builder = SparkSession.builder.appName(name)
    if master or "SPARK_MASTER" not in os.environ:
        builder = builder.master(master or "local[*]")
    defaults = {
        "spark.ui.showConsoleProgress": "false",
        "spark.sql.shuffle.partitions": "8",
        "spark.sql.session.timeZone": "UTC",
        "spark.speculation": "false",
        "spark.hadoop.mapreduce.fileoutputcommitter.marksuccessfuljobs": "false",
        "spark.sql.parquet.compression.codec": "zstd",
    }
    for key, value in {**defaults, **dict(setting.split("=", 1) for setting in settings)}.items():
        builder = builder.config(key, value)
    spark = builder.getOrCreate()
    spark.sparkContext.setLogLevel("ERROR")
    return spark


def spark_schema(schema: pa.Schema) -> StructType:
    return StructType([StructField(field.name, SPARK_TYPES[field.type]) for field in schema])
