-- Decisions by strategy and night
--
-- 0 is unknown, 1 careful, 2 radical, 3 get best. A decision without a device moves nothing.
--
-- day         strategy  decisions  moves  homes
-- 2026-11-20         3        200    200    200
-- 2026-11-21         1         12     12     12
-- 2026-11-21         2        140    140    140
-- 2026-11-21         3         48     48     48
SELECT
    day,
    algStrategy AS strategy,
    count(*) AS decisions,
    sum(CASE WHEN srcMAC <> '000000000000' THEN 1 ELSE 0 END) AS moves,
    count(DISTINCT home) AS homes
FROM alg_output
GROUP BY day, algStrategy
ORDER BY day, strategy
