# What is worth knowing but no fault: shown on request, never part of the exit status.
algdata check damaged/empty.txt
algdata check damaged/empty.txt --notes
algdata check damaged/scanningMacs.txt --notes --where severity=note
algdata check damaged/timeDelayClamped.txt --notes --format csv
