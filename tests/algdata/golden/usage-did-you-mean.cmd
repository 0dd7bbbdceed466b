algdata shwo good
algdata exprot good
algdata frobnicate good
algdata show good --kind stations
algdata show good --kind scaning
algdata show good --kind xyzzy
algdata show good --where rsi=1
algdata show good --where deviceMAK=a4c3f0000010
algdata show good --where DEVICEMAC=a4c3f0000010
algdata show good --columns negoRates
algdata show good --sort xyzzy
algdata show good --kind ap-rank --columns rank
algdata show good --colums kind
algdata show good --format jsno
algdata show good --view lodaed
algdata check good --where severity=eror
algdata check good --where rule=mac-shrt
algdata check good --columns lin
algdata check --explain field-cuont
algdata kinds --where typ=uint8
algdata --vresion
algdata --kind station show good
