// docs/overview.schema.json as it was when this was built.
#pragma once

extern const char *const overview_schema_text;
