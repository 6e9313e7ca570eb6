// The SQL system data types: what the release of "3.14" introduced, and the class names that "4.2" gave them.
#pragma once

#include "document/edits.h"

namespace tolvane {

inline constexpr std::string_view numeric =
    "%Numeric(FORMAT=#.00,MAXVAL=999999999999999,MINVAL=-999999999999999,SCALE=0)";
inline constexpr std::string_view numericprecision =
    "%Numeric(FORMAT=<|'$$format^%apiSQL(%1,0)'|>,MAXVAL=<|'$$maxval^%apiSQL(%1,0)'|>,MINVAL=<|'$$minval^%apiSQL(%1,0)'|>,SCALE=0)";
inline constexpr std::string_view numericprecisionscale =
    "%Numeric(FORMAT=<|'$$format^%apiSQL(%1,%2)'|>,MAXVAL=<|'$$maxval^%apiSQL(%1,%2)'|>,MINVAL=<|'$$minval^%apiSQL(%1,%2)'|>,SCALE=%2)";
inline constexpr std::string_view librarynumeric =
    "%Library.Numeric(MAXVAL=999999999999999,MINVAL=-999999999999999,SCALE=0)";
inline constexpr std::string_view librarynumericprecision =
    "%Library.Numeric(MAXVAL=<|'$$maxval^%apiSQL(%1,0)'|>,MINVAL=<|'$$minval^%apiSQL(%1,0)'|>,SCALE=0)";
inline constexpr std::string_view librarynumericprecisionscale =
    "%Library.Numeric(MAXVAL=<|'$$maxval^%apiSQL(%1,%2)'|>,MINVAL=<|'$$minval^%apiSQL(%1,%2)'|>,SCALE=%2)";
inline constexpr std::string_view floatprecision =
    "%Float(MAXVAL=<|'$$maxval^%apiSQL(%1)'|>,MINVAL=<|'$$minval^%apiSQL(%1)'|>)";
inline constexpr std::string_view numberprecision =
    "%Numeric(MAXVAL=<|'$$maxval^%apiSQL(%1)'|>,MINVAL=<|'$$minval^%apiSQL(%1)'|>,SCALE=0)";
inline constexpr std::string_view libraryfloatprecision =
    "%Library.Float(MAXVAL=<|'$$maxval^%apiSQL(%1)'|>,MINVAL=<|'$$minval^%apiSQL(%1)'|>)";
inline constexpr std::string_view librarynumberprecision =
    "%Library.Numeric(MAXVAL=<|'$$maxval^%apiSQL(%1)'|>,MINVAL=<|'$$minval^%apiSQL(%1)'|>,SCALE=0)";

/// The data types in the order in which they are appended.
/// Kept: "VARCHAR(%1)", "VARCHAR(%1,%2)" and "VARCHAR2(%1)" are %Binary here; step "3.2" makes them %String.
inline constexpr Edit newdatatypes[] = {
    {"BINARY VARYING(%1)",             "%Binary(MAXLEN=%1)"                            },
    {"BINARY(%1)",                     "%Binary(MAXLEN=%1)"                            },
    {"BIT",                            "%Integer(MAXVAL=1,MINVAL=0)"                   },
    {"CHAR",                           "%String(MAXLEN=1)"                             },
    {"CHAR VARYING(%1)",               "%String(MAXLEN=%1)"                            },
    {"CHAR(%1)",                       "%String(MAXLEN=%1)"                            },
    {"CHARACTER",                      "%String(MAXLEN=1)"                             },
    {"CHARACTER VARYING(%1)",          "%String(MAXLEN=%1)"                            },
    {"CHARACTER(%1)",                  "%String(MAXLEN=%1)"                            },
    {"DATE",                           "%Date"                                         },
    {"DATETIME",                       "%TimeStamp"                                    },
    {"DEC",                            numeric                                         },
    {"DEC(%1)",                        numericprecision                                },
    {"DEC(%1,%2)",                     numericprecisionscale                           },
    {"DECIMAL",                        numeric                                         },
    {"DECIMAL(%1)",                    numericprecision                                },
    {"DECIMAL(%1,%2)",                 numericprecisionscale                           },
    {"DOUBLE",                         "%Float"                                        },
    {"DOUBLE PRECISION",               "%Float"                                        },
    {"FLOAT",                          "%Float"                                        },
    {"FLOAT(%1)",                      floatprecision                                  },
    {"IMAGE",                          "BStream%String"                                },
    {"INT",                            "%Integer(MAXVAL=2147483647,MINVAL=-2147483648)"},
    {"INTEGER",                        "%Integer(MAXVAL=2147483647,MINVAL=-2147483648)"},
    {"LONG",                           "CStream%String"                                },
    {"LONG VARCHAR",                   "CStream%String"                                },
    {"LONG VARCHAR(%1)",               "CStream%String"                                },
    {"LONGVARBINARY",                  "BStream%String"                                },
    {"LONGVARBINARY(%1)",              "BStream%String"                                },
    {"LONGVARCHAR",                    "CStream%String"                                },
    {"LONGVARCHAR(%1)",                "CStream%String"                                },
    {"MONEY",                          "%Currency"                                     },
    {"NATIONAL CHAR",                  "%String(MAXLEN=1)"                             },
    {"NATIONAL CHAR VARYING(%1)",      "%String(MAXLEN=%1)"                            },
    {"NATIONAL CHAR(%1)",              "%String(MAXLEN=%1)"                            },
    {"NATIONAL CHARACTER",             "%String(MAXLEN=1)"                             },
    {"NATIONAL CHARACTER VARYING(%1)", "%String(MAXLEN=%1)"                            },
    {"NATIONAL CHARACTER(%1)",         "%String(MAXLEN=%1)"                            },
    {"NATIONAL VARCHAR(%1)",           "%String(MAXLEN=%1)"                            },
    {"NCHAR",                          "%String(MAXLEN=1)"                             },
    {"NCHAR(%1)",                      "%String(MAXLEN=%1)"                            },
    {"NTEXT",                          "CStream%String"                                },
    {"NUMBER",                         "%Numeric(SCALE=0)"                             },
    {"NUMBER(%1)",                     numberprecision                                 },
    {"NUMBER(%1,%2)",                  numericprecisionscale                           },
    {"NUMERIC",                        numeric                                         },
    {"NUMERIC(%1)",                    numericprecision                                },
    {"NUMERIC(%1,%2)",                 numericprecisionscale                           },
    {"NVARCHAR(%1)",                   "%String(MAXLEN=%1)"                            },
    {"RAW(%1)",                        "%Binary(MAXLEN=%1)"                            },
    {"REAL",                           "%Float"                                        },
    {"SMALLINT",                       "%Integer(MAXVAL=32767,MINVAL=-32768)"          },
    {"SMALLMONEY",                     "%Currency"                                     },
    {"TEXT",                           "CStream%String"                                },
    {"TIME",                           "%Time"                                         },
    {"TIMESTAMP",                      "%TimeStamp"                                    },
    {"TINYINT",                        "%Integer(MAXVAL=127,MINVAL=-128)"              },
    {"VARBINARY(%1)",                  "%Binary(MAXLEN=%1)"                            },
    {"VARCHAR(%1)",                    "%Binary(MAXLEN=%1)"                            },
    {"VARCHAR(%1,%2)",                 "%Binary(MAXLEN=%1)"                            },
    {"VARCHAR(255)",                   "%String(MAXLEN=255,COLLATION=STRING(150))"     },
    {"VARCHAR2(%1)",                   "%Binary(MAXLEN=%1)"                            },
};

/// The data types whose class gets its library name. "DATETIME" is not among them, on purpose.
inline constexpr Edit libraryclasses[] = {
    {"BINARY VARYING(%1)",             "%Library.Binary(MAXLEN=%1)"                            },
    {"BINARY(%1)",                     "%Library.Binary(MAXLEN=%1)"                            },
    {"BIT",                            "%Library.Boolean"                                      },
    {"CHAR",                           "%Library.String(MAXLEN=1)"                             },
    {"CHAR VARYING(%1)",               "%Library.String(MAXLEN=%1)"                            },
    {"CHAR(%1)",                       "%Library.String(MAXLEN=%1)"                            },
    {"CHARACTER",                      "%Library.String(MAXLEN=1)"                             },
    {"CHARACTER VARYING(%1)",          "%Library.String(MAXLEN=%1)"                            },
    {"CHARACTER(%1)",                  "%Library.String(MAXLEN=%1)"                            },
    {"DATE",                           "%Library.Date"                                         },
    {"DEC",                            librarynumeric                                          },
    {"DEC(%1)",                        librarynumericprecision                                 },
    {"DEC(%1,%2)",                     librarynumericprecisionscale                            },
    {"DECIMAL",                        librarynumeric                                          },
    {"DECIMAL(%1)",                    librarynumericprecision                                 },
    {"DECIMAL(%1,%2)",                 librarynumericprecisionscale                            },
    {"DOUBLE",                         "%Library.Float"                                        },
    {"DOUBLE PRECISION",               "%Library.Float"                                        },
    {"FLOAT",                          "%Library.Float"                                        },
    {"FLOAT(%1)",                      libraryfloatprecision                                   },
    {"IMAGE",                          "BStream%String"                                        },
    {"INT",                            "%Library.Integer(MAXVAL=2147483647,MINVAL=-2147483648)"},
    {"INTEGER",                        "%Library.Integer(MAXVAL=2147483647,MINVAL=-2147483648)"},
    {"LONG",                           "CStream%String"                                        },
    {"LONG BINARY",                    "BStream%String"                                        },
    {"LONG RAW",                       "BStream%String"                                        },
    {"LONG VARCHAR",                   "CStream%String"                                        },
    {"LONG VARCHAR(%1)",               "CStream%String"                                        },
    {"LONGVARBINARY",                  "BStream%String"                                        },
    {"LONGVARBINARY(%1)",              "BStream%String"                                        },
    {"LONGVARCHAR",                    "CStream%String"                                        },
    {"LONGVARCHAR(%1)",                "CStream%String"                                        },
    {"MONEY",                          "%Library.Currency"                                     },
    {"NATIONAL CHAR",                  "%Library.String(MAXLEN=1)"                             },
    {"NATIONAL CHAR VARYING(%1)",      "%Library.String(MAXLEN=%1)"                            },
    {"NATIONAL CHAR(%1)",              "%Library.String(MAXLEN=%1)"                            },
    {"NATIONAL CHARACTER",             "%Library.String(MAXLEN=1)"                             },
    {"NATIONAL CHARACTER VARYING(%1)", "%Library.String(MAXLEN=%1)"                            },
    {"NATIONAL CHARACTER(%1)",         "%Library.String(MAXLEN=%1)"                            },
    {"NATIONAL VARCHAR(%1)",           "%Library.String(MAXLEN=%1)"                            },
    {"NCHAR",                          "%Library.String(MAXLEN=1)"                             },
    {"NCHAR(%1)",                      "%Library.String(MAXLEN=%1)"                            },
    {"NTEXT",                          "CStream%String"                                        },
    {"NUMBER",                         "%Library.Numeric(SCALE=0)"                             },
    {"NUMBER(%1)",                     librarynumberprecision                                  },
    {"NUMBER(%1,%2)",                  librarynumericprecisionscale                            },
    {"NUMERIC",                        librarynumeric                                          },
    {"NUMERIC(%1)",                    librarynumericprecision                                 },
    {"NUMERIC(%1,%2)",                 librarynumericprecisionscale                            },
    {"NVARCHAR(%1)",                   "%Library.String(MAXLEN=%1)"                            },
    {"NVARCHAR(%1,%2)",                "%Library.String(MAXLEN=%1)"                            },
    {"RAW(%1)",                        "%Library.Binary(MAXLEN=%1)"                            },
    {"REAL",                           "%Library.Float"                                        },
    {"SMALLINT",                       "%Library.SmallInt"                                     },
    {"SMALLMONEY",                     "%Library.Currency"                                     },
    {"TEXT",                           "CStream%String"                                        },
    {"TIME",                           "%Library.Time"                                         },
    {"TIMESTAMP",                      "%Library.TimeStamp"                                    },
    {"TINYINT",                        "%Library.TinyInt"                                      },
    {"VARBINARY(%1)",                  "%Library.Binary(MAXLEN=%1)"                            },
    {"VARCHAR(%1)",                    "%Library.String(MAXLEN=%1)"                            },
    {"VARCHAR(%1,%2)",                 "%Library.String(MAXLEN=%1)"                            },
    {"VARCHAR2(%1)",                   "%Library.String(MAXLEN=%1)"                            },
};

static_assert(std::size(newdatatypes) == 62);
static_assert(std::size(libraryclasses) == 63);

}  // namespace tolvane
